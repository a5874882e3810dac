#include "platform/linux/desktop/DesktopFolders.h"

#include "platform/linux/desktop/KeyFile.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace orvanta {

namespace fs = std::filesystem;

namespace {

constexpr const char* kDefaultDataFolders = "/usr/local/share:/usr/share";
constexpr const char* kDefaultPath = "/usr/local/bin:/usr/bin:/bin:/usr/games";
constexpr const char* kSystemFlatpakExports = "/var/lib/flatpak/exports/share";
constexpr const char* kSnapExports = "/var/lib/snapd/desktop";

/// An empty variable counts as none.
std::string variable(const char* name, const std::string& otherwise = {}) {
    const char* const value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : otherwise;
}

/// Relative folders are to be ignored: what they mean depends on where a program was started.
fs::path folderVariable(const char* name, const fs::path& otherwise) {
    const fs::path folder = variable(name);
    return folder.is_absolute() ? tidied(folder) : otherwise;
}

std::vector<fs::path> absoluteFolders(std::string_view list) {
    std::vector<fs::path> folders;
    for (const std::string_view item : desktop::listItems(list, ':'))
        if (const fs::path folder = item; folder.is_absolute())
            folders.push_back(tidied(folder));
    return folders;
}

void addMissing(std::vector<fs::path>& folders, const fs::path& folder) {
    if (std::find(folders.begin(), folders.end(), folder) == folders.end())
        folders.push_back(folder);
}

/// The languages that the user reads. Plain C speaks none, and no list of languages changes that.
std::vector<std::string> userLocales() {
    const std::string locale = variable("LC_ALL", variable("LC_MESSAGES", variable("LANG", "C")));
    const std::string languages = variable("LANGUAGE");
    std::vector<std::string> locales;
    if (locale != "C" && locale != "POSIX")
        for (const std::string_view language : desktop::listItems(languages, ':'))
            locales.emplace_back(language);
    locales.push_back(locale);
    return locales;
}

} // namespace

fs::path tidied(const fs::path& folder) {
    const fs::path path = folder.lexically_normal();
    return path.has_filename() ? path : path.parent_path();
}

DesktopFolders DesktopFolders::fromEnvironment() {
    DesktopFolders folders;
    folders.home = folderVariable("HOME", "/");
    folders.dataHome = folderVariable("XDG_DATA_HOME", folders.home / ".local/share");
    folders.configHome = folderVariable("XDG_CONFIG_HOME", folders.home / ".config");
    folders.dataFolders = absoluteFolders(variable("XDG_DATA_DIRS", kDefaultDataFolders));
    addMissing(folders.dataFolders, folders.dataHome / "flatpak/exports/share");
    addMissing(folders.dataFolders, kSystemFlatpakExports);
    addMissing(folders.dataFolders, kSnapExports);
    folders.executableFolders = absoluteFolders(variable("PATH", kDefaultPath));
    folders.locales = userLocales();
    return folders;
}

std::vector<fs::path> DesktopFolders::allDataFolders() const {
    std::vector<fs::path> all{dataHome};
    for (const fs::path& folder : dataFolders)
        addMissing(all, folder);
    return all;
}

} // namespace orvanta
