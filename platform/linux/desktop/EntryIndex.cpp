#include "platform/linux/desktop/EntryIndex.h"

#include "platform/linux/desktop/CommandLine.h"
#include "platform/linux/desktop/KeyFile.h"
#include "platform/linux/desktop/ProgramPath.h"

#include <algorithm>
#include <tuple>

namespace orvanta::desktop {
namespace {

bool isBetter(const DesktopEntry& a, const DesktopEntry& b) {
    return std::tuple(!a.isShown, a.commandLength, std::string_view(a.id)) <
           std::tuple(!b.isShown, b.commandLength, std::string_view(b.id));
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
    for (const auto& [id, entry] : entries.all())
        add(entry, executableFolders);
}

void EntryIndex::add(const DesktopEntryRef& entry,
                     const std::vector<std::filesystem::path>& executableFolders) {
    byID_[entry->id] = entry;
    addTo(byLowerID_, asciiLowerCase(entry->id), entry);
    addTo(byFlatpakID_, entry->flatpakID, entry);
    addTo(bySnapName_, entry->snapName, entry);
    addTo(byWindowClass_, asciiLowerCase(entry->windowClass), entry);
    for (const std::string& program : entry->programs)
        addProgram(program, entry, executableFolders);
}

void EntryIndex::addProgram(const std::string& program, const DesktopEntryRef& entry,
                            const std::vector<std::filesystem::path>& executableFolders) {
    const std::string path = locatedProgram(program, executableFolders);
    const std::string folder = ownFolderOf(path);
    // An interpreter runs anybody's programs, unless a package brings one of its own.
    const bool isAnybodys = isInterpreter(fileNameOf(program));
    if (isAnybodys && folder.empty())
        return;
    if (!isAnybodys)
        addTo(byProgramName_, asciiLowerCase(fileNameOf(program)), entry);
    if (path.empty())
        return;
    addTo(byProgram_, path, entry);
    addTo(byProgramFolder_, folder, entry);
    programPaths_.emplace(entry->id, path);
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
    for (const std::string& name : namesOf(path))
        if (DesktopEntryRef namesake = found(byProgramName_, asciiLowerCase(name)))
            return namesake;
    return nullptr;
}

DesktopEntryRef EntryIndex::withWindowClass(std::string_view name) const {
    return found(byWindowClass_, asciiLowerCase(name));
}

bool EntryIndex::runs(const DesktopEntry& entry, const std::string& path) const {
    const auto [begin, end] = programPaths_.equal_range(entry.id);
    return std::any_of(begin, end, [&](const auto& program) { return program.second == path; });
}

} // namespace orvanta::desktop
