#pragma once

#include "platform/linux/desktop/DesktopEntries.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace orvanta::desktop {

/// Finds the entry of a running program. Where several entries fit, the one shown in menus comes
/// first, then the one with the plainest command, then the first id in the alphabet: the answer
/// does not depend on the order of files. A program that several entries of menus tell different
/// things, and none just starts, is no one's by its file alone: it is a loader of games, say.
class EntryIndex {
public:
    EntryIndex() = default;

    /// `executableFolders`: where programs named without a folder lie.
    EntryIndex(const DesktopEntries& entries,
               const std::vector<std::filesystem::path>& executableFolders);

    /// The id itself, or the same in other letter case; null when there is none.
    [[nodiscard]] DesktopEntryRef withID(const std::string& id) const;

    /// The id of a Flatpak: of its exported entry, or of the first that says it belongs to it.
    [[nodiscard]] DesktopEntryRef withFlatpakID(const std::string& id) const;

    /// The snap's program `app`, or else the first entry that says it belongs to the snap.
    [[nodiscard]] DesktopEntryRef withSnap(const std::string& snap, const std::string& app) const;

    /// The entry that runs this very file.
    [[nodiscard]] DesktopEntryRef withProgram(const std::string& path) const;

    /// The entry whose program lies in this program's folder, where that is a folder of its own,
    /// or is called like this program or its folder: what a start script at another place runs. A
    /// name counts for installed programs only.
    [[nodiscard]] DesktopEntryRef withProgramLike(const std::string& path) const;

    /// Whether a program's name says what it is: it lies where packages or the user install
    /// programs, or in or below a folder that is an entry's own.
    [[nodiscard]] bool isInstalled(const std::string& path) const;

    [[nodiscard]] DesktopEntryRef withWindowClass(std::string_view name) const;

    /// Whether this very file is one of the entry's programs.
    [[nodiscard]] bool runs(const DesktopEntry& entry, const std::string& path) const;

private:
    using Map = std::map<std::string, DesktopEntryRef, std::less<>>;

    /// A program as an entry writes it.
    struct EntryProgram {
        std::string program;
        DesktopEntryRef entry;
    };

    using EntryPrograms = std::vector<EntryProgram>;

    void add(const DesktopEntryRef& entry);
    void addProgram(const std::string& path, const EntryPrograms& entries);
    [[nodiscard]] static bool standsForProgram(const EntryProgram& best,
                                               const EntryPrograms& entries);

    std::set<std::string> executableFolders_;
    Map byID_;
    Map byLowerID_;
    Map byFlatpakID_;
    Map bySnapName_;
    Map byProgram_;
    Map byProgramFolder_;
    Map byProgramName_;
    Map byWindowClass_;
    /// Paths of each entry's programs, by id.
    std::multimap<std::string, std::string> programPaths_;
};

} // namespace orvanta::desktop
