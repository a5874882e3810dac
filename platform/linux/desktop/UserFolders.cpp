#include "platform/linux/desktop/UserFolders.h"

#include "platform/linux/desktop/KeyFile.h"
#include "platform/linux/desktop/SmallFile.h"

#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace orvanta {

namespace fs = std::filesystem;

namespace {

/// A file of eight lines; what is far beyond that is something else.
constexpr std::size_t kLargestFile = 1U << 16U;

constexpr const char* kMusicKey = "XDG_MUSIC_DIR";
constexpr const char* kDocumentsKey = "XDG_DOCUMENTS_DIR";
constexpr const char* kDownloadsKey = "XDG_DOWNLOAD_DIR";

/// What the shell makes of a quoted word without variables: a backslash stands for the character
/// behind it. Nothing when the first quote that is not escaped does not end the value.
std::optional<std::string> withoutQuotes(std::string_view value) {
    if (!value.starts_with('"'))
        return std::nullopt;
    std::string text;
    for (std::size_t at = 1; at < value.size(); ++at) {
        if (value[at] == '"')
            return at + 1 == value.size() ? std::optional(text) : std::nullopt;
        if (value[at] == '\\' && ++at == value.size())
            break;
        text += value[at];
    }
    return std::nullopt;
}

/// Nothing for what is no folder. An empty `home` is none.
std::optional<fs::path> folderIn(std::string_view value, const fs::path& home) {
    constexpr std::string_view kHome = "$HOME";
    const bool isInHome = value.starts_with("\"$HOME/") || value == "\"$HOME\"";
    auto text = withoutQuotes(value);
    // A path ends where the system sees a zero, which nobody wrote for that.
    if (!text || text->find('\0') != std::string::npos || (isInHome && home.empty()))
        return std::nullopt;
    if (isInHome)
        text->replace(0, kHome.size(), home.string());
    else if (!value.starts_with("\"/"))
        return std::nullopt;
    return tidied(*text);
}

/// The last line that names a folder for the key counts, as it does for a shell.
std::optional<fs::path> chosenFolder(std::string_view text, std::string_view key,
                                     const fs::path& home) {
    std::optional<fs::path> chosen;
    desktop::KeyFileReader lines(text);
    while (const auto line = lines.next())
        if (line->key == key && line->locale.empty())
            if (auto folder = folderIn(line->value, home))
                chosen = std::move(folder);
    return chosen;
}

std::optional<fs::path> conventionalFolder(const fs::path& home, const char* name) {
    return home.empty() ? std::nullopt : std::optional(home / name);
}

std::optional<fs::path> unlessHome(const std::optional<fs::path>& folder, const fs::path& home) {
    return folder == home ? std::nullopt : folder;
}

fs::path temporaryFolder() {
    std::error_code error;
    fs::path folder = fs::temp_directory_path(error);
    return error ? "/tmp" : folder;
}

} // namespace

UserFolders userFoldersOf(const DesktopFolders& desktop) {
    const fs::path home = desktop.home == "/" ? fs::path() : tidied(desktop.home);
    const std::string text =
        desktop::readSmallFile(desktop.configHome / "user-dirs.dirs", kLargestFile).value_or("");
    const auto folder = [&](const char* key, const char* name) {
        const auto chosen = chosenFolder(text, key, home);
        return chosen ? unlessHome(chosen, home) : conventionalFolder(home, name);
    };
    return {.music = folder(kMusicKey, "Music"),
            .documents = folder(kDocumentsKey, "Documents"),
            .downloads = folder(kDownloadsKey, "Downloads"),
            .temporary = temporaryFolder()};
}

} // namespace orvanta
