#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orvanta {

/// What a process uses: PROC_PIDTASKINFO of proc_pidinfo.
struct ProcessTaskInfo {
    std::uint64_t virtualSize = 0;  ///< bytes
    std::uint64_t residentSize = 0; ///< bytes
    std::uint64_t totalUser = 0;    ///< ns of processor time since its start
    std::uint64_t totalSystem = 0;  ///< ns of processor time since its start
    std::int32_t threadCount = 0;

    friend bool operator==(const ProcessTaskInfo&, const ProcessTaskInfo&) = default;
};

/// What the operating system knows of processes by their id.
class ProcessTable {
public:
    ProcessTable() = default;
    ProcessTable(const ProcessTable&) = delete;
    ProcessTable& operator=(const ProcessTable&) = delete;
    virtual ~ProcessTable() = default;

    /// The program's own process.
    [[nodiscard]] virtual std::int32_t ownPID() const = 0;

    /// proc_name: the system's short name, at most 16 characters; nothing for an unknown process
    /// or an empty name.
    [[nodiscard]] virtual std::optional<std::string> name(std::int32_t pid) const = 0;

    /// proc_pidpath: path of the executable; nothing when it cannot be read.
    [[nodiscard]] virtual std::optional<std::string> path(std::int32_t pid) const = 0;

    /// pbi_ppid of proc_pidinfo; nothing when it cannot be read.
    [[nodiscard]] virtual std::optional<std::int32_t> parent(std::int32_t pid) const = 0;

    /// Nothing for a process that is gone or not ours to see. From any thread.
    [[nodiscard]] virtual std::optional<ProcessTaskInfo> taskInfo(std::int32_t pid) const = 0;
};

} // namespace orvanta
