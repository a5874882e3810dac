#pragma once

#include "core/platform/RunLoop.h"

#include <QObject>
#include <QTimer>
#include <atomic>
#include <functional>
#include <optional>

namespace orvanta {

/// Lets Qt's event loop run what a queue of tasks has due. Lives on the event loop's thread.
class EventLoopPump final : public QObject {
    Q_OBJECT

public:
    /// `turn` runs what is due and says how long the event loop may rest; nothing for as long as
    /// nobody wakes it. It may destroy the pump.
    explicit EventLoopPump(std::function<std::optional<Seconds>()> turn);

    /// A turn comes soon. From any thread; several calls before it are one.
    void wake();

Q_SIGNALS:
    void woken(QPrivateSignal);

private:
    void takeTurn();

    const std::function<std::optional<Seconds>()> turn_;
    QTimer timer_;
    std::atomic<bool> isWoken_ = false;
};

} // namespace orvanta
