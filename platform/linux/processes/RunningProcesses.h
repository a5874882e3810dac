#pragma once

#include "platform/linux/processes/Process.h"

#include <filesystem>
#include <map>

namespace orvanta::desktop {

/// All processes, as the proc file system shows them.
class RunningProcesses {
public:
    explicit RunningProcesses(std::filesystem::path root);

    /// Looks at all of them again. What cannot change without a new executable is read for new
    /// processes only, and once more at the next look: a session manager moves what it has just
    /// started into a control group of its own.
    void refresh();

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
    [[nodiscard]] Process looked(int procFolder, Process now);

    const std::filesystem::path root_;
    std::map<std::int32_t, Process> processes_;
    std::uint64_t lastRevision_ = 0;
};

} // namespace orvanta::desktop
