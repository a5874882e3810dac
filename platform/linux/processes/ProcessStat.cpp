#include "platform/linux/processes/ProcessStat.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace orvanta::desktop {
namespace {

// Counted from the field behind the name, which is the third of the line.
constexpr std::size_t kParentField = 1;
constexpr std::size_t kSessionField = 3;
constexpr std::size_t kUserTimeField = 11;
constexpr std::size_t kSystemTimeField = 12;
constexpr std::size_t kThreadCountField = 17;
constexpr std::size_t kStartTimeField = 19;
constexpr std::size_t kVirtualSizeField = 20;
constexpr std::size_t kResidentPagesField = 21;

/// Empty where the line has ended before.
using Fields = std::array<std::string_view, kResidentPagesField + 1>;

template <typename Number>
std::optional<Number> number(std::string_view text) {
    Number value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() ? std::optional(value) : std::nullopt;
}

Fields fieldsOf(std::string_view rest) {
    Fields fields;
    for (std::string_view& field : fields) {
        field = rest.substr(0, rest.find(' '));
        rest.remove_prefix(std::min(rest.size(), field.size() + 1));
    }
    return fields;
}

} // namespace

ProcessStat parseProcessStat(std::string_view line) {
    ProcessStat stat;
    // "pid (name) state parent …": the name may itself hold parentheses and spaces, so the last
    // closing one ends it.
    const auto nameBegin = line.find('(');
    const auto nameEnd = line.rfind(") ");
    if (nameBegin == std::string_view::npos || nameEnd == std::string_view::npos ||
        nameEnd < nameBegin)
        return stat;
    stat.name = line.substr(nameBegin + 1, nameEnd - nameBegin - 1);
    const Fields fields = fieldsOf(line.substr(nameEnd + 2));
    stat.parent = number<std::int32_t>(fields[kParentField]);
    stat.session = number<std::int32_t>(fields[kSessionField]);
    stat.userTime = number<std::uint64_t>(fields[kUserTimeField]);
    stat.systemTime = number<std::uint64_t>(fields[kSystemTimeField]);
    stat.threadCount = number<std::int32_t>(fields[kThreadCountField]);
    stat.startTime = number<std::uint64_t>(fields[kStartTimeField]);
    stat.virtualSize = number<std::uint64_t>(fields[kVirtualSizeField]);
    stat.residentPages = number<std::uint64_t>(fields[kResidentPagesField]);
    return stat;
}

} // namespace orvanta::desktop
