#include "platform/qt/eventloop/EventLoopPump.h"

#include <QPointer>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace orvanta {
namespace {

constexpr std::chrono::milliseconds kTurnWithinATurn{10};

/// Whole milliseconds, rounded up: a timer that fires early would only have to be set again. At
/// most an hour, after which a turn without work does no harm.
std::chrono::milliseconds timerInterval(Seconds time) {
    constexpr double kLongest = 3'600'000.0;
    return std::chrono::milliseconds(
        static_cast<long>(std::ceil(std::clamp(time.count() * 1000.0, 0.0, kLongest))));
}

} // namespace

EventLoopPump::EventLoopPump(std::function<std::optional<Seconds>()> turn)
    : turn_(std::move(turn)) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &EventLoopPump::takeTurn);
    connect(this, &EventLoopPump::woken, this, &EventLoopPump::takeTurn, Qt::QueuedConnection);
}

void EventLoopPump::wake() {
    if (!isWoken_.exchange(true))
        Q_EMIT woken(QPrivateSignal());
}

void EventLoopPump::takeTurn() {
    // Before the turn: what is posted during it asks for another.
    isWoken_ = false;
    // A task may run an event loop of its own, for a menu or a drag: what falls due then is not to
    // wait for its end.
    timer_.start(kTurnWithinATurn);
    const QPointer<EventLoopPump> self(this);
    const auto turn = turn_;
    const auto rest = turn();
    if (!self)
        return;
    if (rest)
        timer_.start(timerInterval(*rest));
    else
        timer_.stop();
}

} // namespace orvanta
