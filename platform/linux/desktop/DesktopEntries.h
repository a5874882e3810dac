#pragma once

#include "platform/linux/desktop/DesktopEntry.h"
#include "platform/linux/desktop/DesktopFolders.h"
#include "platform/linux/desktop/FolderState.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::desktop {

/// All installed applications. Of several files with one id, the first folder's counts.
class DesktopEntries {
public:
    explicit DesktopEntries(const DesktopFolders& folders);

    using WallTime = std::chrono::system_clock::time_point;

    /// Reads everything again when a folder has changed since, or is another one, which costs a
    /// look at each folder's state otherwise. A file rewritten in place goes unnoticed; installers
    /// put a new one in its stead. True when it was read again.
    bool refresh(WallTime now = std::chrono::system_clock::now());

    /// By id.
    [[nodiscard]] const std::map<std::string, DesktopEntryRef>& all() const { return entries_; }

    /// The entry that was read from this file, or null.
    [[nodiscard]] DesktopEntryRef entryOfFile(const std::filesystem::path& file) const;

private:
    struct Folder {
        std::filesystem::path path;
        FolderState state;
    };

    [[nodiscard]] bool isCurrent() const;
    void readFolder(const std::filesystem::path& folder, const std::string& idPrefix, int depth);
    void readFile(const std::filesystem::path& file, std::string id);

    const std::vector<std::filesystem::path> roots_;
    const std::vector<std::string> localeKeys_;
    std::map<std::string, DesktopEntryRef> entries_;
    std::map<std::filesystem::path, DesktopEntryRef> byFile_;
    std::vector<Folder> folders_;
    std::optional<WallTime> read_;
    std::size_t filesRead_ = 0;
};

} // namespace orvanta::desktop
