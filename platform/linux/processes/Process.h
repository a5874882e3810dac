#pragma once

#include "platform/linux/processes/ProcessScope.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace orvanta::desktop {

/// The folder of a process in the proc file system. Another one is another process, or the kernel
/// has made it anew, as it does when memory is short: that costs a reading and no more.
struct ProcessFolder {
    std::uint64_t inode = 0;
    std::int64_t changedSeconds = 0;
    std::int64_t changedNanoseconds = 0;

    bool operator==(const ProcessFolder&) const = default;
};

/// A running process, as far as it tells which application it belongs to. Texts are empty where
/// the system does not tell.
struct Process {
    std::int32_t pid = 0;
    std::int32_t parent = 0;
    std::int32_t session = 0;
    std::uint64_t startTime = 0; ///< in clock ticks since boot
    std::string name;            ///< the kernel's short one
    std::string executable;
    std::string script; ///< what an interpreter runs
    ProcessScope scope;
    std::string flatpakID;
    std::int32_t innermostPID = 0; ///< how a Flatpak program's process knows itself; else 0
    ProcessFolder folder;
    /// When the fields from `script` on were read first, and whether they were read again since, so
    /// late that the session has put the process where it belongs.
    std::chrono::steady_clock::time_point firstRead;
    bool isSettled = false;
    /// Differs from that of every earlier state of any process.
    std::uint64_t revision = 0;

    /// What the process runs: the script, or else the executable.
    [[nodiscard]] const std::string& program() const {
        return script.empty() ? executable : script;
    }
};

} // namespace orvanta::desktop
