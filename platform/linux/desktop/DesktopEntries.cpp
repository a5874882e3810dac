#include "platform/linux/desktop/DesktopEntries.h"

#include "platform/linux/desktop/LocaleNames.h"
#include "platform/linux/desktop/SmallFile.h"

#include <algorithm>
#include <system_error>

namespace orvanta::desktop {

namespace fs = std::filesystem;

namespace {

/// The longest entries, of browsers in a hundred languages, take a tenth of it.
constexpr std::size_t kLargestEntry = 1U << 20U;
constexpr std::size_t kMostFiles = 10000;
constexpr int kDeepestFolder = 4;
constexpr std::string_view kSuffix = ".desktop";

/// A folder that changed so shortly before or after it was read may have changed again in the same
/// tick of the file system's clock. Longer after is no time but a clock that was wrong.
constexpr std::chrono::seconds kUnsettled{2};

bool isSettled(const FolderState& folder, DesktopEntries::WallTime read) {
    return std::chrono::abs(folder.changed - read.time_since_epoch()) > kUnsettled;
}

std::vector<fs::path> applicationFolders(const DesktopFolders& folders) {
    std::vector<fs::path> roots;
    for (const fs::path& folder : folders.allDataFolders())
        roots.push_back(folder / "applications");
    return roots;
}

/// In an order of their own, so that the same files give the same answer on every machine.
std::vector<fs::directory_entry> sortedContents(const fs::path& folder) {
    std::vector<fs::directory_entry> contents;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        if (contents.size() < kMostFiles)
            contents.push_back(*at);
    std::sort(contents.begin(), contents.end());
    return contents;
}

/// A link to a folder may lead back to where it lies.
bool isOwnFolder(const fs::directory_entry& entry) {
    std::error_code error;
    return entry.symlink_status(error).type() == fs::file_type::directory;
}

} // namespace

DesktopEntries::DesktopEntries(const DesktopFolders& folders)
    : roots_(applicationFolders(folders)), localeKeys_(localeKeys(folders.locales)) {}

bool DesktopEntries::refresh(WallTime now) {
    if (isCurrent())
        return false;
    entries_.clear();
    byFile_.clear();
    folders_.clear();
    filesRead_ = 0;
    read_ = now;
    for (const fs::path& root : roots_)
        readFolder(root, "", 0);
    std::erase_if(entries_, [](const auto& entry) { return entry.second->isHidden; });
    for (const auto& [id, entry] : entries_)
        byFile_[entry->file] = entry;
    return true;
}

DesktopEntryRef DesktopEntries::entryOfFile(const fs::path& file) const {
    const auto found = byFile_.find(file);
    return found == byFile_.end() ? nullptr : found->second;
}

bool DesktopEntries::isCurrent() const {
    return read_ && std::all_of(folders_.begin(), folders_.end(), [this](const Folder& folder) {
               return stateOf(folder.path) == folder.state && isSettled(folder.state, *read_);
           });
}

void DesktopEntries::readFolder(const fs::path& folder, const std::string& idPrefix, int depth) {
    // The state before the contents: a change between the two shows as a time that has moved.
    folders_.push_back({folder, stateOf(folder)});
    for (const fs::directory_entry& entry : sortedContents(folder)) {
        const std::string name = entry.path().filename().string();
        if (name.ends_with(kSuffix) && name.size() > kSuffix.size())
            readFile(entry.path(), idPrefix + name.substr(0, name.size() - kSuffix.size()));
        else if (depth < kDeepestFolder && isOwnFolder(entry))
            readFolder(entry.path(), idPrefix + name + "-", depth + 1);
    }
}

void DesktopEntries::readFile(const fs::path& file, std::string id) {
    if (entries_.contains(id) || ++filesRead_ > kMostFiles)
        return;
    const auto text = readSmallFile(file, kLargestEntry);
    if (!text)
        return;
    if (auto entry = parseDesktopEntry(*text, id, file, localeKeys_))
        entries_.emplace(std::move(id), std::make_shared<const DesktopEntry>(*std::move(entry)));
}

} // namespace orvanta::desktop
