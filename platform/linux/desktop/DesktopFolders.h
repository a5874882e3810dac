#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvanta {

/// Where a user's desktop keeps what it knows, and the languages it speaks.
struct DesktopFolders {
    std::filesystem::path home;
    std::filesystem::path dataHome;
    /// What all users share, in order of precedence after `dataHome`.
    std::vector<std::filesystem::path> dataFolders;
    std::filesystem::path configHome;
    /// Where a program that is named without a folder is looked for.
    std::vector<std::filesystem::path> executableFolders;
    /// Locale names in order of preference, as in "de_AT.UTF-8".
    std::vector<std::string> locales;

    /// What this process's environment says, defaults for what it leaves out. The exports of
    /// Flatpak and Snap are among the data folders whether the environment names them or not:
    /// a program that no desktop session started lacks them.
    [[nodiscard]] static DesktopFolders fromEnvironment();

    /// `dataHome` and the others.
    [[nodiscard]] std::vector<std::filesystem::path> allDataFolders() const;
};

/// A folder in one way of writing it, without a slash at its end, so that the same folder is found
/// to be the same.
[[nodiscard]] std::filesystem::path tidied(const std::filesystem::path& folder);

} // namespace orvanta
