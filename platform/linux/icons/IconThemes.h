#pragma once

#include "platform/linux/desktop/DesktopFolders.h"
#include "platform/linux/icons/IconTheme.h"

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::desktop {

/// Finds the files of icons: in the user's theme, in those that it inherits from, in hicolor, where
/// applications put their own, in Adwaita, then among the loose pictures of the data folders. PNG
/// and SVG. Safe from all threads.
class IconThemes {
public:
    explicit IconThemes(DesktopFolders folders);

    /// The file that fits a square of so many pixels best: made for the size, or else the smallest
    /// of the larger ones, or else the largest. `icon`: a name, or an absolute path to a file.
    [[nodiscard]] std::optional<std::filesystem::path> file(const std::string& icon,
                                                            int pixels) const;

    /// The same in a theme other than the user's present one.
    [[nodiscard]] std::optional<std::filesystem::path>
    fileInTheme(const std::string& theme, const std::string& icon, int pixels) const;

    /// The user's theme, read from the settings at each call; empty where they name none.
    [[nodiscard]] std::string themeName() const;

private:
    using FileTime = std::filesystem::file_time_type;

    /// A theme's folders that there are, with their whole paths.
    struct InstalledTheme {
        std::vector<std::string> inherits;
        std::vector<IconFolder> folders;
        /// Of the theme's folder below each of `bases_`. Whoever installs an icon has to touch it.
        std::vector<FileTime> changed;
    };

    [[nodiscard]] std::vector<std::string> themesInOrder(const std::string& first) const;
    [[nodiscard]] const InstalledTheme& installed(const std::string& theme) const;
    [[nodiscard]] InstalledTheme read(const std::string& theme) const;
    [[nodiscard]] std::vector<FileTime> timesOf(const std::string& theme) const;
    [[nodiscard]] std::optional<std::filesystem::path> loosePicture(const std::string& icon) const;

    const DesktopFolders folders_;
    const std::vector<std::filesystem::path> bases_;
    mutable std::mutex mutex_;
    mutable std::map<std::string, InstalledTheme> themes_;
};

} // namespace orvanta::desktop
