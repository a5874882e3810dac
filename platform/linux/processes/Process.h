#pragma once

#include "platform/linux/processes/ProcessScope.h"

#include <cstdint>
#include <string>

namespace orvanta::desktop {

/// The folder of a process in the proc file system. It is the same as long as the process is.
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
    /// How often the fields from `script` on were read.
    int timesRead = 0;
    /// Differs from that of every earlier state of any process.
    std::uint64_t revision = 0;

    /// What the process runs: the script, or else the executable.
    [[nodiscard]] const std::string& program() const {
        return script.empty() ? executable : script;
    }
};

} // namespace orvanta::desktop
