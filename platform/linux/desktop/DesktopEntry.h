#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvanta::desktop {

/// An installed application, as its ".desktop" file describes it.
struct DesktopEntry {
    std::string id; ///< of the file's path, without ".desktop"
    std::filesystem::path file;
    std::string name; ///< in the user's language
    std::string icon; ///< a name in the icon theme or an absolute path; may be empty
    /// What Exec and TryExec run, as written there: paths or names without a folder.
    std::vector<std::string> programs;
    /// The words of Exec: of several entries for one program, the plainest stands for it.
    std::vector<std::string> command;
    std::string windowClass;
    std::string flatpakID;
    std::string snapName;
    bool isShown = true; ///< in menus; what is not is a part of the desktop or of another program
    /// Terminals, file managers and what runs in a terminal: programs started from there are not
    /// theirs.
    bool startsOthers = false;
    /// The user has taken away the application of this id.
    bool isHidden = false;
};

using DesktopEntryRef = std::shared_ptr<const DesktopEntry>;

/// Nothing for a text that describes no application or has no name to show. `localeKeys`: the
/// user's, best first. Of a hidden entry only id and file are told.
[[nodiscard]] std::optional<DesktopEntry>
parseDesktopEntry(std::string_view text, std::string id, std::filesystem::path file,
                  const std::vector<std::string>& localeKeys);

} // namespace orvanta::desktop
