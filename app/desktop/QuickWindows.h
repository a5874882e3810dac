#pragma once

#include "app/desktop/Panel.h"
#include "app/shell/ShellWindows.h"

#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orvanta {

/// The program's windows on this toolkit: each is made when it is opened and goes when it is
/// closed, so that it begins anew the next time. The panel is among them, and lasts.
class QuickWindows final : public QObject, public ShellWindows {
public:
    /// `engine` must outlive it.
    explicit QuickWindows(QQmlEngine& engine);
    ~QuickWindows() override;

    /// What those views begin with that have a property of this name.
    void give(const QString& name, QObject& bridge);

    /// Makes the panel's window; lasts as long as this. Throws std::runtime_error with the engine's
    /// words.
    [[nodiscard]] QQuickWindow& makePanel();
    /// Ends all windows, the panel's too: before what they show does.
    void clear();

    /// Told when the panel is hidden, not when it is only covered.
    void onPanelClosed(std::function<void()> closed);

    /// `changed` is told whenever the console can be seen, and cannot any more.
    void onConsoleVisibility(std::function<void(bool isVisible)> changed) {
        consoleVisibilityChanged_ = std::move(changed);
    }

    /// How the panel gives way to another window.
    void setPanelHider(std::function<void()> hide) { hidePanel_ = std::move(hide); }

    void open(std::string_view identifier) override;
    [[nodiscard]] std::vector<std::string> titles() const override;
    void close(std::string_view title) override;
    void makeKeyAndOrderFront(std::string_view title) override;
    void closeKeyWindow() override;
    void activateIgnoringOtherApps() override;

private:
    [[nodiscard]] std::unique_ptr<QQuickWindow> make(const QString& file);
    [[nodiscard]] QQuickWindow* find(std::string_view title) const;

    QQmlEngine& engine_;
    QVariantMap bridges_;
    std::unique_ptr<QQuickWindow> panel_;
    std::function<void()> hidePanel_;
    std::function<void(bool)> consoleVisibilityChanged_;
    std::vector<QPointer<QQuickWindow>> open_;
};

} // namespace orvanta
