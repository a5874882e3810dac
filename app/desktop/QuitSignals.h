#pragma once

#include <QSocketNotifier>
#include <csignal>
#include <functional>
#include <optional>

namespace orvanta {

/// SIGINT, SIGTERM and SIGHUP as a request that the event loop takes up. Held back from the
/// constructor on, in all threads that are started from then on; made before any other is.
class QuitSignals {
public:
    QuitSignals();
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;
    ~QuitSignals();

    /// From now on each calls this on the main thread, one that has come already too. Needs Qt's
    /// application object.
    void listen(std::function<void()> quit);

private:
    sigset_t signals_{};
    int descriptor_ = -1;
    std::function<void()> quit_;
    std::optional<QSocketNotifier> notifier_;
};

} // namespace orvanta
