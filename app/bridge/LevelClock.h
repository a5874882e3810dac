#pragma once

#include "core/platform/RunLoop.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <memory>

namespace orvanta {

/// Beats for everything that moves with the sound, at the rate of a screen, while a view that shows
/// any of it is open. One for all meters, so that they wake the processor together.
class LevelClock final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The mixer has one.")

public:
    static constexpr Seconds interval{1.0 / 60.0};

    /// `mainRunLoop` must outlive it.
    explicit LevelClock(RunLoop& mainRunLoop) : mainRunLoop_(mainRunLoop) {}

    [[nodiscard]] Seconds now() const { return mainRunLoop_.now(); }

    [[nodiscard]] bool isRunning() const { return timer_ != nullptr; }

    void setRunning(bool isRunning);

Q_SIGNALS:
    /// It begins to beat: time has passed that nobody counted.
    void started();
    void ticked();

private:
    RunLoop& mainRunLoop_;
    std::unique_ptr<RepeatingTimer> timer_;
};

} // namespace orvanta
