#pragma once

#include "core/platform/ProcessTable.h"

#include <map>
#include <mutex>

namespace orvanta {

class EmbeddedAudioServer;

/// The processes of an embedded audio server's programs, and others that a script adds: parents,
/// helpers, processes without sound. Safe from all threads.
class EmbeddedProcessTable final : public ProcessTable {
public:
    /// What is known of a process; what is absent cannot be read.
    struct Process {
        std::optional<std::string> name = std::nullopt;
        std::optional<std::string> path = std::nullopt;
        std::optional<std::int32_t> parent = 1;
        std::optional<ProcessTaskInfo> taskInfo = std::nullopt;
    };

    /// `server` must outlive the table.
    explicit EmbeddedProcessTable(const EmbeddedAudioServer& server, std::int32_t ownPID = 1000);

    void setOwnPID(std::int32_t pid);
    /// Stands in place of what the server's programs say of this pid.
    void set(std::int32_t pid, Process process);
    /// Undoes `set`.
    void unset(std::int32_t pid);

    [[nodiscard]] std::int32_t ownPID() const override;
    [[nodiscard]] std::optional<std::string> name(std::int32_t pid) const override;
    [[nodiscard]] std::optional<std::string> path(std::int32_t pid) const override;
    [[nodiscard]] std::optional<std::int32_t> parent(std::int32_t pid) const override;
    /// What a script has set. The server's programs have no process that would use anything.
    [[nodiscard]] std::optional<ProcessTaskInfo> taskInfo(std::int32_t pid) const override;

private:
    [[nodiscard]] std::optional<Process> find(std::int32_t pid) const;

    const EmbeddedAudioServer& server_;
    mutable std::mutex mutex_;
    std::int32_t ownPID_;
    std::map<std::int32_t, Process> scripted_;
};

} // namespace orvanta
