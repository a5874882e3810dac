#include "tests/support/Waiting.h"

#include <thread>

namespace orvanta::test {

bool eventually(Seconds bound, const std::function<bool()>& isSo) {
    const auto end = std::chrono::steady_clock::now() + bound;
    while (!isSo()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(3));
    }
    return true;
}

void letTimePass(Seconds duration) {
    std::this_thread::sleep_for(duration);
}

double monotonicSeconds() {
    return Seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace orvanta::test
