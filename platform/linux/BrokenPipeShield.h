#pragma once

#include <csignal>

namespace orvanta {

/// While it lives, a write of this thread to a pipe that nobody reads fails without the signal that
/// would end the program. Signals from elsewhere, and the thread's mask, are as before afterwards.
class BrokenPipeShield {
public:
    BrokenPipeShield();
    BrokenPipeShield(const BrokenPipeShield&) = delete;
    BrokenPipeShield& operator=(const BrokenPipeShield&) = delete;
    ~BrokenPipeShield();

private:
    sigset_t brokenPipe_{};
    sigset_t maskBefore_{};
    bool wasPending_ = false;
};

} // namespace orvanta
