#pragma once

#include "platform/linux/desktop/DesktopEntry.h"
#include "platform/linux/desktop/DesktopFolders.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace orvanta::desktop {

/// All installed applications. Of several files with one id, the first folder's counts.
class DesktopEntries {
public:
    explicit DesktopEntries(const DesktopFolders& folders);

    /// Reads everything again when a folder has changed since, which costs a look at each folder's
    /// time otherwise. A file rewritten in place goes unnoticed; installers put a new one in its
    /// stead. True when it was read again.
    bool refresh();

    /// By id.
    [[nodiscard]] const std::map<std::string, DesktopEntryRef>& all() const { return entries_; }

    /// The entry that was read from this file, or null.
    [[nodiscard]] DesktopEntryRef entryOfFile(const std::filesystem::path& file) const;

private:
    using FileTime = std::filesystem::file_time_type;

    struct Folder {
        std::filesystem::path path;
        FileTime changed; ///< `FileTime::min()` where there is none
    };

    [[nodiscard]] bool isCurrent() const;
    void readFolder(const std::filesystem::path& folder, const std::string& idPrefix, int depth);
    void readFile(const std::filesystem::path& file, std::string id);

    const std::vector<std::filesystem::path> roots_;
    const std::vector<std::string> localeKeys_;
    std::map<std::string, DesktopEntryRef> entries_;
    std::map<std::filesystem::path, DesktopEntryRef> byFile_;
    std::vector<Folder> folders_;
    FileTime read_ = FileTime::min();
    std::size_t filesRead_ = 0;
};

} // namespace orvanta::desktop
