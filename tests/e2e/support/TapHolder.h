#pragma once

#include "tests/support/ChildProcess.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orvanta::test {

/// The tap engine in a process of its own, which can be killed and whose processor time can be
/// told from the tests'.
class TapHolder {
public:
    struct TapReport {
        std::uint64_t callbacks = 0;
        float rms = 0;
        float peak = 0;
    };

    /// Returns when every process is tapped at this volume; throws when that fails.
    TapHolder(float volume, const std::vector<pid_t>& pids);

    /// Throws when the device does not take the tap.
    void route(pid_t pid, const std::string& deviceUID);

    [[nodiscard]] TapReport report(pid_t pid);

    void kill() { program_.kill(); }

    [[nodiscard]] double processorSeconds() const { return program_.processorSeconds(); }

private:
    ChildProcess program_;
};

} // namespace orvanta::test
