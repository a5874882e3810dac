#include "platform/linux/BrokenPipeShield.h"

#include <cerrno>
#include <ctime>

namespace orvanta {
namespace {

bool isPending(int signal) {
    sigset_t pending;
    sigemptyset(&pending);
    sigpending(&pending);
    return sigismember(&pending, signal) == 1;
}

} // namespace

BrokenPipeShield::BrokenPipeShield() {
    sigemptyset(&brokenPipe_);
    sigaddset(&brokenPipe_, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &brokenPipe_, &maskBefore_);
    wasPending_ = isPending(SIGPIPE);
}

BrokenPipeShield::~BrokenPipeShield() {
    // One that was pending before swallows ours: it is not to be taken from its owner.
    if (!wasPending_ && isPending(SIGPIPE)) {
        constexpr timespec kAtOnce{};
        while (sigtimedwait(&brokenPipe_, nullptr, &kAtOnce) < 0 && errno == EINTR) {
        }
    }
    pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
}

} // namespace orvanta
