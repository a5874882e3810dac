#include "platform/linux/processes/ProcessStat.h"

#include <algorithm>
#include <charconv>

namespace orvanta::desktop {
namespace {

// Counted from the field behind the name, which is the third of the line.
constexpr int kParentField = 1;
constexpr int kSessionField = 3;
constexpr int kStartTimeField = 19;

template <typename Number>
std::optional<Number> number(std::string_view text) {
    Number value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() ? std::optional(value) : std::nullopt;
}

std::string_view takeField(std::string_view& rest) {
    const std::string_view field = rest.substr(0, rest.find(' '));
    rest.remove_prefix(std::min(rest.size(), field.size() + 1));
    return field;
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
    std::string_view rest = line.substr(nameEnd + 2);
    for (int field = 0; field <= kStartTimeField && !rest.empty(); ++field) {
        const std::string_view text = takeField(rest);
        if (field == kParentField)
            stat.parent = number<std::int32_t>(text);
        else if (field == kSessionField)
            stat.session = number<std::int32_t>(text);
        else if (field == kStartTimeField)
            stat.startTime = number<std::uint64_t>(text);
    }
    return stat;
}

} // namespace orvanta::desktop
