#include "platform/pipewire/ProcessIdentity.h"

#include <array>
#include <charconv>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace orvanta::pipewire {

std::optional<std::uint64_t> startTimeInStat(std::string_view stat) {
    const auto nameEnd = stat.rfind(')');
    if (nameEnd == std::string_view::npos)
        return std::nullopt;
    std::string_view rest = stat.substr(nameEnd + 1);
    // The name was field 2; the start time is field 22, so twenty blanks lie before it.
    for (int field = 0; field < 20; ++field) {
        const auto blank = rest.find(' ');
        if (blank == std::string_view::npos)
            return std::nullopt;
        rest.remove_prefix(blank + 1);
    }
    std::uint64_t ticks = 0;
    if (std::from_chars(rest.data(), rest.data() + rest.size(), ticks).ec != std::errc{})
        return std::nullopt;
    return ticks;
}

std::optional<std::uint64_t> processStartTime(pid_t pid) {
    const std::string path = "/proc/" + std::to_string(pid) + "/stat";
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return std::nullopt;
    std::array<char, 1024> text{};
    const ssize_t length = ::read(file, text.data(), text.size());
    ::close(file);
    if (length <= 0)
        return std::nullopt;
    return startTimeInStat({text.data(), static_cast<std::size_t>(length)});
}

} // namespace orvanta::pipewire
