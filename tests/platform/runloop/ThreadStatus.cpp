#include "tests/platform/runloop/ThreadStatus.h"

#include <chrono>
#include <fstream>
#include <thread>
#include <unistd.h>

namespace orvanta::test {

pid_t thisThreadID() {
    return gettid();
}

std::string statusOf(pid_t thread, const std::string& field) {
    std::ifstream status("/proc/self/task/" + std::to_string(thread) + "/status");
    const std::string start = field + ":\t";
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(start))
            return line.substr(start.size());
    }
    return {};
}

bool isAsleep(pid_t thread) {
    return statusOf(thread, "State").starts_with("S");
}

long timesPutToSleep(pid_t thread) {
    return std::stol(statusOf(thread, "voluntary_ctxt_switches"));
}

bool becomesTrue(const std::function<bool()>& condition) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (Clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace orvanta::test
