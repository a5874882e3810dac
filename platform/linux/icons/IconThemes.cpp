#include "platform/linux/icons/IconThemes.h"

#include "platform/linux/desktop/SmallFile.h"
#include "platform/linux/icons/IconThemeName.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <deque>
#include <system_error>
#include <tuple>

namespace orvanta::desktop {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLargestIndex = 1U << 20U;
/// Themes inherit from three or four; a cycle or a jungle ends here.
constexpr std::size_t kMostThemes = 32;
constexpr std::array kFormats = std::to_array<const char*>({".png", ".svg"});

std::vector<fs::path> iconBases(const DesktopFolders& folders) {
    std::vector<fs::path> bases{folders.home / ".icons"};
    for (const fs::path& folder : folders.allDataFolders())
        bases.push_back(folder / "icons");
    return bases;
}

bool isFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

/// A name must not have an ending, but some do.
std::string withoutFormat(std::string icon) {
    for (const std::string_view ending : {".png", ".svg", ".xpm"})
        if (icon.ends_with(ending) && icon.size() > ending.size())
            icon.resize(icon.size() - ending.size());
    return icon;
}

/// The folders that applications' icons lie in wherever hicolor's own description is missing: it
/// belongs to a package that a machine of Flatpaks alone may lack.
std::vector<IconFolder> usualFolders() {
    std::vector<IconFolder> folders;
    for (const int size : {16, 22, 24, 32, 48, 64, 96, 128, 192, 256, 512}) {
        const std::string square = std::to_string(size) + "x" + std::to_string(size);
        folders.push_back({square + "/apps", size, size, size});
    }
    folders.push_back({"scalable/apps", 128, 8, 512});
    return folders;
}

std::optional<fs::path> pictureIn(const fs::path& folder, const std::string& icon) {
    for (const char* format : kFormats)
        if (fs::path file = folder / (icon + format); isFile(file))
            return file;
    return std::nullopt;
}

/// Shrinking a picture looks better than blowing it up.
auto badness(const IconFolder& folder, int pixels) {
    return std::tuple(folder.largest < pixels, folder.distance(pixels),
                      std::abs(folder.size - pixels));
}

std::optional<fs::path> bestPicture(std::vector<const IconFolder*> folders, const std::string& icon,
                                    int pixels) {
    std::stable_sort(folders.begin(), folders.end(),
                     [pixels](const IconFolder* a, const IconFolder* b) {
                         return badness(*a, pixels) < badness(*b, pixels);
                     });
    for (const IconFolder* folder : folders)
        if (auto picture = pictureIn(folder->path, icon))
            return picture;
    return std::nullopt;
}

} // namespace

IconThemes::IconThemes(DesktopFolders folders)
    : folders_(std::move(folders)), bases_(iconBases(folders_)) {}

std::optional<fs::path> IconThemes::file(const std::string& icon, int pixels) const {
    return fileInTheme(themeName(), icon, pixels);
}

std::optional<fs::path> IconThemes::fileInTheme(const std::string& theme, const std::string& icon,
                                                int pixels) const {
    if (icon.starts_with('/'))
        return isFile(icon) ? std::optional<fs::path>(icon) : std::nullopt;
    const std::string name = withoutFormat(icon);
    if (!isPlainName(name))
        return std::nullopt;
    const std::scoped_lock guard(mutex_);
    for (const std::string& next : themesInOrder(theme)) {
        std::vector<const IconFolder*> folders;
        for (const IconFolder& folder : installed(next).folders)
            folders.push_back(&folder);
        if (auto picture = bestPicture(std::move(folders), name, pixels))
            return picture;
    }
    return loosePicture(name);
}

std::string IconThemes::themeName() const {
    return iconThemeName(folders_);
}

std::vector<std::string> IconThemes::themesInOrder(const std::string& first) const {
    std::vector<std::string> order;
    std::deque<std::string> waiting{first};
    const auto add = [&order](const std::string& theme) {
        const bool isNew = std::find(order.begin(), order.end(), theme) == order.end();
        if (isNew && !theme.empty() && order.size() < kMostThemes)
            order.push_back(theme);
        return isNew && order.size() < kMostThemes;
    };
    for (; !waiting.empty(); waiting.pop_front())
        if (!waiting.front().empty() && waiting.front() != "hicolor" && add(waiting.front()))
            for (const std::string& parent : installed(waiting.front()).inherits)
                waiting.push_back(parent);
    add("hicolor");
    add("Adwaita");
    return order;
}

const IconThemes::InstalledTheme& IconThemes::installed(const std::string& theme) const {
    InstalledTheme& known = themes_[theme];
    if (known.changed != timesOf(theme))
        known = read(theme);
    return known;
}

IconThemes::InstalledTheme IconThemes::read(const std::string& theme) const {
    InstalledTheme installed;
    installed.changed = timesOf(theme);
    IconTheme description;
    for (const fs::path& base : bases_)
        if (const auto text = readSmallFile(base / theme / "index.theme", kLargestIndex)) {
            description = parseIconTheme(*text);
            break;
        }
    if (theme == "hicolor" && description.folders.empty())
        description.folders = usualFolders();
    installed.inherits = std::move(description.inherits);
    std::error_code error;
    for (const fs::path& base : bases_)
        if (fs::is_directory(base / theme, error))
            for (const IconFolder& folder : description.folders)
                if (fs::path path = base / theme / folder.path; fs::is_directory(path, error))
                    installed.folders.push_back(
                        {path.string(), folder.size, folder.smallest, folder.largest});
    return installed;
}

std::vector<IconThemes::FileTime> IconThemes::timesOf(const std::string& theme) const {
    std::vector<FileTime> times;
    for (const fs::path& base : bases_) {
        std::error_code error;
        const FileTime time = fs::last_write_time(base / theme, error);
        times.push_back(error ? FileTime::min() : time);
    }
    return times;
}

std::optional<fs::path> IconThemes::loosePicture(const std::string& icon) const {
    for (const fs::path& base : bases_)
        if (auto picture = pictureIn(base, icon))
            return picture;
    for (const fs::path& folder : folders_.allDataFolders())
        if (auto picture = pictureIn(folder / "pixmaps", icon))
            return picture;
    return std::nullopt;
}

} // namespace orvanta::desktop
