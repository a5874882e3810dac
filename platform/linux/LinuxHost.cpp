#include "platform/linux/LinuxHost.h"

#include "platform/linux/desktop/KeyFile.h"
#include "platform/linux/desktop/SmallFile.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <pwd.h>
#include <string_view>
#include <sys/utsname.h>
#include <unistd.h>
#include <utility>

namespace orvanta {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLargestReleaseFile = 64U << 10U;
/// More than the fields of any user take.
constexpr std::size_t kPasswordEntrySize = 16U << 10U;

/// The value as a shell takes it, for such files may be read by one: quotes go, and a backslash
/// makes the character behind it plain, within double quotes only one that is not plain already.
std::string withoutQuotes(std::string_view value) {
    constexpr std::string_view kSpecialInDoubleQuotes = "\"\\$`";
    std::string plain;
    char quote = '\0';
    for (std::size_t at = 0; at < value.size(); ++at) {
        const char letter = value[at];
        const char next = at + 1 < value.size() ? value[at + 1] : '\0';
        const bool isEscape =
            letter == '\\' && next != '\0' && quote != '\'' &&
            (quote == '\0' || kSpecialInDoubleQuotes.find(next) != std::string_view::npos);
        if (isEscape)
            plain += value[++at];
        else if (quote != '\0' && letter == quote)
            quote = '\0';
        else if (quote == '\0' && (letter == '"' || letter == '\''))
            quote = letter;
        else
            plain += letter;
    }
    return plain;
}

/// As in a shell the last assignment holds.
std::string prettyName(std::string_view releaseFile) {
    std::string name;
    desktop::KeyFileReader reader(releaseFile);
    while (const auto line = reader.next())
        if (line->group.empty() && line->key == "PRETTY_NAME")
            name = withoutQuotes(line->value);
    return name;
}

std::string kernelVersion() {
    utsname names{};
    if (uname(&names) != 0)
        return "Linux";
    return std::string(names.sysname) + " " + names.release;
}

} // namespace

HostInfo linuxHost(std::optional<std::string> shortVersion,
                   std::optional<std::string> bundleVersion) {
    return {.homeDirectory = userHomeDirectory(),
            .shortVersion = std::move(shortVersion),
            .bundleVersion = std::move(bundleVersion),
            .operatingSystemVersion =
                operatingSystemVersion({"/etc/os-release", "/usr/lib/os-release"})};
}

fs::path userHomeDirectory() {
    const char* const told = std::getenv("HOME");
    if (fs::path home = told != nullptr ? told : ""; home.is_absolute())
        return home;
    std::array<char, kPasswordEntrySize> texts{};
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, texts.data(), texts.size(), &found) == 0 && found != nullptr &&
        fs::path(found->pw_dir).is_absolute())
        return found->pw_dir;
    return "/";
}

std::string operatingSystemVersion(const std::vector<fs::path>& releaseFiles) {
    for (const fs::path& file : releaseFiles) {
        const auto text = desktop::readSmallFile(file, kLargestReleaseFile);
        if (!text)
            continue;
        const std::string name = prettyName(*text);
        return desktop::isDisplayText(name) ? name : kernelVersion();
    }
    return kernelVersion();
}

} // namespace orvanta
