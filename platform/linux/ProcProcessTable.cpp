#include "platform/linux/ProcProcessTable.h"

#include "platform/linux/desktop/ProgramPath.h"
#include "platform/linux/processes/ProcessStat.h"

#include <algorithm>
#include <fstream>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace orvanta {
namespace {

constexpr std::size_t kMaximumNameLength = 16;

std::optional<std::string> contents(const std::filesystem::path& file) {
    // Neither of the files read here comes near a page.
    constexpr std::size_t kMaximumSize = 4096;
    std::ifstream stream(file, std::ios::binary);
    std::string text(kMaximumSize, '\0');
    if (!stream || stream.read(text.data(), kMaximumSize).bad())
        return std::nullopt;
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return text;
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Bytes of the UTF-8 character that begins with `lead`; 1 for bytes that begin none.
std::size_t characterLength(char lead) {
    const auto byte = static_cast<unsigned char>(lead);
    if (byte >= 0xF0U)
        return 4;
    if (byte >= 0xE0U)
        return 3;
    return byte >= 0xC0U ? 2 : 1;
}

std::string_view withoutCutCharacter(std::string_view text) {
    const auto lead = std::find_if_not(text.rbegin(), text.rend(), isContinuation);
    if (lead == text.rend())
        return text;
    const auto present = static_cast<std::size_t>(lead - text.rbegin()) + 1;
    if (present < characterLength(*lead))
        text.remove_suffix(present);
    return text;
}

/// Whole seconds apart, since the product of large tick counts would leave the type.
std::uint64_t nanosecondsOf(std::uint64_t ticks) {
    constexpr std::uint64_t kNanosecondsPerSecond = 1'000'000'000;
    const auto ticksPerSecond = static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
    return ticks / ticksPerSecond * kNanosecondsPerSecond +
           ticks % ticksPerSecond * kNanosecondsPerSecond / ticksPerSecond;
}

} // namespace

ProcProcessTable::ProcProcessTable(std::filesystem::path root) : root_(std::move(root)) {}

std::int32_t ProcProcessTable::ownPID() const {
    return getpid();
}

std::optional<std::string> ProcProcessTable::name(std::int32_t pid) const {
    const auto line = contents(entry(pid, "comm"));
    if (!line)
        return std::nullopt;
    std::string_view name = *line;
    if (name.ends_with('\n'))
        name.remove_suffix(1);
    name = withoutCutCharacter(name.substr(0, kMaximumNameLength));
    if (name.empty())
        return std::nullopt;
    return std::string(name);
}

std::optional<std::string> ProcProcessTable::path(std::int32_t pid) const {
    std::error_code error;
    std::string path = std::filesystem::read_symlink(entry(pid, "exe"), error).string();
    if (error || path.empty())
        return std::nullopt;
    return desktop::withoutDeletedMark(std::move(path));
}

std::optional<std::int32_t> ProcProcessTable::parent(std::int32_t pid) const {
    const auto line = contents(entry(pid, "stat"));
    if (!line)
        return std::nullopt;
    return desktop::parseProcessStat(*line).parent;
}

std::optional<ProcessTaskInfo> ProcProcessTable::taskInfo(std::int32_t pid) const {
    const auto line = contents(entry(pid, "stat"));
    if (!line)
        return std::nullopt;
    const desktop::ProcessStat stat = desktop::parseProcessStat(*line);
    if (!stat.userTime || !stat.systemTime || !stat.threadCount || !stat.virtualSize ||
        !stat.residentPages)
        return std::nullopt;
    const auto pageSize = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    return ProcessTaskInfo{.virtualSize = *stat.virtualSize,
                           .residentSize = *stat.residentPages * pageSize,
                           .totalUser = nanosecondsOf(*stat.userTime),
                           .totalSystem = nanosecondsOf(*stat.systemTime),
                           .threadCount = *stat.threadCount};
}

std::filesystem::path ProcProcessTable::entry(std::int32_t pid, const char* file) const {
    return root_ / std::to_string(pid) / file;
}

} // namespace orvanta
