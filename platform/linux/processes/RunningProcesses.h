#pragma once

#include "platform/linux/processes/Process.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <set>

namespace orvanta::desktop {

/// All processes, as the proc file system shows them.
class RunningProcesses {
public:
    explicit RunningProcesses(std::filesystem::path root);

    using Instant = std::chrono::steady_clock::time_point;

    /// Looks at all of them again, at `playing` most closely: what these run is read every time.
    /// New ones are read in full until they have been there for a second, since a session manager
    /// moves what it has just started into a control group of its own. Every eighth time they are
    /// all read, and in full if they have moved all the same. In between a glance tells that they
    /// are still there, which costs a tenth.
    void refresh(Instant now, const std::set<std::int32_t>& playing = {});

    /// By id, as of the last look.
    [[nodiscard]] const std::map<std::int32_t, Process>& all() const { return processes_; }

    /// Null for none.
    [[nodiscard]] const Process* find(std::int32_t pid) const;

    /// Whether there is such a process now, looked at or not.
    [[nodiscard]] bool exists(std::int32_t pid) const;

    /// The process of the Flatpak that knows itself under `pid`, or null. Of several instances, the
    /// one with the lowest id.
    [[nodiscard]] const Process* findInFlatpak(const std::string& flatpakID,
                                               std::int32_t pid) const;

private:
    [[nodiscard]] bool needsReading(const Process& known, const ProcessFolder& folder) const;
    [[nodiscard]] bool isItsTurn(std::int32_t pid) const;
    [[nodiscard]] Process read(int procFolder, Process process, Instant now);

    const std::filesystem::path root_;
    std::map<std::int32_t, Process> processes_;
    std::uint64_t lastRevision_ = 0;
    std::int32_t looks_ = 0;
};

} // namespace orvanta::desktop
