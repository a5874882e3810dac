#include "platform/linux/desktop/EntryIndex.h"

#include "platform/linux/desktop/CommandLine.h"
#include "platform/linux/desktop/KeyFile.h"
#include "platform/linux/desktop/ProgramPath.h"

#include <algorithm>
#include <tuple>

namespace orvanta::desktop {
namespace {

bool isBetter(const DesktopEntry& a, const DesktopEntry& b) {
    return std::tuple(!a.isShown, a.command.size(), std::string_view(a.id)) <
           std::tuple(!b.isShown, b.command.size(), std::string_view(b.id));
}

bool isAbsolute(const std::string& path) {
    return path.starts_with('/');
}

template <typename Map>
void addTo(Map& map, std::string key, const DesktopEntryRef& entry) {
    if (key.empty())
        return;
    const auto [at, isNew] = map.emplace(std::move(key), entry);
    if (!isNew && isBetter(*entry, *at->second))
        at->second = entry;
}

template <typename Map, typename Key>
DesktopEntryRef found(const Map& map, const Key& key) {
    const auto at = map.find(key);
    return at == map.end() ? nullptr : at->second;
}

} // namespace

EntryIndex::EntryIndex(const DesktopEntries& entries,
                       const std::vector<std::filesystem::path>& executableFolders) {
    for (const std::filesystem::path& folder : executableFolders)
        executableFolders_.insert(locatedProgram(folder.string(), {}));
    // By path, or else by the name that no folder has a file of.
    std::map<std::string, EntryPrograms> programs;
    for (const auto& [id, entry] : entries.all()) {
        add(entry);
        for (const std::string& program : entry->programs) {
            const std::string path = locatedProgram(program, executableFolders);
            programs[path.empty() ? program : path].push_back({program, entry});
        }
    }
    for (const auto& [path, entriesOfProgram] : programs)
        addProgram(path, entriesOfProgram);
}

void EntryIndex::add(const DesktopEntryRef& entry) {
    byID_[entry->id] = entry;
    addTo(byLowerID_, asciiLowerCase(entry->id), entry);
    addTo(byFlatpakID_, entry->flatpakID, entry);
    addTo(bySnapName_, entry->snapName, entry);
    addTo(byWindowClass_, asciiLowerCase(entry->windowClass), entry);
}

void EntryIndex::addProgram(const std::string& path, const EntryPrograms& entries) {
    const bool isLocated = isAbsolute(path) || isWindowsPath(path);
    const std::string folder = ownFolderOf(path);
    const auto best =
        std::min_element(entries.begin(), entries.end(),
                         [](const auto& a, const auto& b) { return isBetter(*a.entry, *b.entry); });
    const bool hasOne = standsForProgram(*best, entries);
    for (const auto& [program, entry] : entries) {
        // An interpreter runs anybody's programs, unless a package brings one of its own.
        const bool isAnybodys = isInterpreter(fileNameOf(program));
        if (isAnybodys && folder.empty())
            continue;
        if (isLocated)
            programPaths_.emplace(entry->id, path);
        if (!hasOne)
            continue;
        if (!isAnybodys)
            addTo(byProgramName_, asciiLowerCase(fileNameOf(program)), entry);
        if (isLocated) {
            addTo(byProgram_, path, entry);
            addTo(byProgramFolder_, folder, entry);
        }
    }
}

/// `best` is the best of `entries`.
bool EntryIndex::standsForProgram(const EntryProgram& best, const EntryPrograms& entries) {
    const std::vector<std::string>& command = best.entry->command;
    const bool justStartsIt =
        !command.empty() && fileNameOf(command.back()) == fileNameOf(best.program);
    return std::all_of(entries.begin(), entries.end(), [&](const EntryProgram& other) {
        const bool isPlainer = justStartsIt && command.size() < other.entry->command.size();
        return !other.entry->isShown || isPlainer || other.entry->command == command;
    });
}

DesktopEntryRef EntryIndex::withID(const std::string& id) const {
    DesktopEntryRef exact = found(byID_, id);
    return exact ? exact : found(byLowerID_, asciiLowerCase(id));
}

DesktopEntryRef EntryIndex::withFlatpakID(const std::string& id) const {
    DesktopEntryRef exported = withID(id);
    return exported ? exported : found(byFlatpakID_, id);
}

DesktopEntryRef EntryIndex::withSnap(const std::string& snap, const std::string& app) const {
    DesktopEntryRef program = withID(snap + "_" + app);
    return program ? program : found(bySnapName_, snap);
}

DesktopEntryRef EntryIndex::withProgram(const std::string& path) const {
    return found(byProgram_, path);
}

DesktopEntryRef EntryIndex::withProgramLike(const std::string& path) const {
    if (DesktopEntryRef neighbour = found(byProgramFolder_, folderOf(path)))
        return neighbour;
    if (!isInstalled(path))
        return nullptr;
    for (const std::string& name : namesOf(path))
        if (DesktopEntryRef namesake = found(byProgramName_, asciiLowerCase(name)))
            return namesake;
    return nullptr;
}

bool EntryIndex::isInstalled(const std::string& path) const {
    if (isInstalledByPackage(path) || executableFolders_.contains(folderOf(path)))
        return true;
    for (std::string folder = folderOf(path); !folder.empty(); folder = folderOf(folder))
        if (byProgramFolder_.contains(folder))
            return true;
    return false;
}

DesktopEntryRef EntryIndex::withWindowClass(std::string_view name) const {
    return found(byWindowClass_, asciiLowerCase(name));
}

bool EntryIndex::runs(const DesktopEntry& entry, const std::string& path) const {
    const auto [begin, end] = programPaths_.equal_range(entry.id);
    return std::any_of(begin, end, [&](const auto& program) { return program.second == path; });
}

} // namespace orvanta::desktop
