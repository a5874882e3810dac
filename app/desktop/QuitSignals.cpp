#include "app/desktop/QuitSignals.h"

#include <cerrno>
#include <pthread.h>
#include <sys/signalfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace orvanta {

namespace {

/// What we start (a browser, a mail program) is to die of signals as others do.
void restoreSignalsInChild() {
    std::signal(SIGPIPE, SIG_DFL);
    std::signal(SIGXFSZ, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

} // namespace

QuitSignals::QuitSignals() {
    pthread_atfork(nullptr, nullptr, &restoreSignalsInChild);
    sigemptyset(&signals_);
    sigaddset(&signals_, SIGINT);
    sigaddset(&signals_, SIGTERM);
    sigaddset(&signals_, SIGHUP);
    descriptor_ = signalfd(-1, &signals_, SFD_CLOEXEC | SFD_NONBLOCK);
    if (descriptor_ < 0)
        throw std::system_error(errno, std::generic_category(), "cannot watch for signals");
    pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
}

QuitSignals::~QuitSignals() {
    notifier_.reset();
    close(descriptor_);
}

void QuitSignals::listen(std::function<void()> quit) {
    quit_ = std::move(quit);
    notifier_.emplace(descriptor_, QSocketNotifier::Read);
    QObject::connect(&*notifier_, &QSocketNotifier::activated, [this] {
        signalfd_siginfo signal{};
        while (read(descriptor_, &signal, sizeof signal) == sizeof signal)
            quit_();
    });
}

} // namespace orvanta
