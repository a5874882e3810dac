#pragma once

#include "core/platform/ProcessTable.h"

#include <filesystem>
#include <string>

namespace orvanta {

/// The process table, read afresh from the proc file system at every question. A process that is
/// gone, or not ours to see, answers nothing.
class ProcProcessTable final : public ProcessTable {
public:
    explicit ProcProcessTable(std::filesystem::path root = "/proc");

    [[nodiscard]] std::int32_t ownPID() const override;

    /// The kernel keeps 15 bytes of a name. Where it cut a character in two, the rest of that
    /// character is left out.
    [[nodiscard]] std::optional<std::string> name(std::int32_t pid) const override;

    /// Of a program that was replaced on disk since it started: the path it was started from.
    [[nodiscard]] std::optional<std::string> path(std::int32_t pid) const override;

    /// 0 for processes that the kernel started.
    [[nodiscard]] std::optional<std::int32_t> parent(std::int32_t pid) const override;

    /// All figures are of one moment. The kernel tells processor time in clock ticks, of which a
    /// second has 100 nearly everywhere: the totals advance in steps of 10 ms. Resident memory may
    /// be off by some pages for each thread.
    [[nodiscard]] std::optional<ProcessTaskInfo> taskInfo(std::int32_t pid) const override;

private:
    [[nodiscard]] std::filesystem::path entry(std::int32_t pid, const char* file) const;

    const std::filesystem::path root_;
};

} // namespace orvanta
