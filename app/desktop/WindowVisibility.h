#pragma once

#include <QObject>
#include <QTimer>
#include <QWindow>
#include <functional>

namespace orvanta {

/// Whether somebody can see a window: it is shown, not minimised, and the desktop says that some of
/// it is on a screen. What cannot be seen need not move.
class WindowVisibility final : public QObject {
public:
    /// `changed` is told of each change from unseen on. The window must outlive it.
    WindowVisibility(QWindow& window, std::function<void(bool isVisible)> changed);

    [[nodiscard]] bool isVisible() const { return isVisible_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void look();

    QWindow& window_;
    const std::function<void(bool)> changed_;
    QTimer looking_;
    bool isVisible_ = false;
};

} // namespace orvanta
