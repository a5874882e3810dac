#include "platform/linux/applications/EntryOfProgram.h"

#include "platform/linux/desktop/CommandLine.h"

#include <string_view>

namespace orvanta::desktop {
namespace {

DesktopEntryRef entryOfSandbox(const EntryIndex& index, const Process& process) {
    if (!process.flatpakID.empty())
        if (auto entry = index.withFlatpakID(process.flatpakID))
            return entry;
    if (!process.scope.snapName.empty())
        return index.withSnap(process.scope.snapName, process.scope.snapApp);
    return nullptr;
}

/// "org.example.Player", or "Player" where only that is an entry.
DesktopEntryRef entryOfApplicationID(const EntryIndex& index, std::string_view id) {
    constexpr std::string_view kSuffix = ".desktop";
    if (id.ends_with(kSuffix))
        id.remove_suffix(kSuffix.size());
    if (auto entry = index.withID(std::string(id)))
        return entry;
    return index.withID(std::string(id.substr(id.rfind('.') + 1)));
}

DesktopEntryRef entryOfScope(const EntryIndex& index, const Process& process) {
    for (const std::string& id : process.scope.applicationIDs)
        if (auto entry = index.withID(id)) {
            const bool mayHoldOthers = entry->startsOthers || !entry->isShown;
            return mayHoldOthers && !index.runs(*entry, process.program()) ? nullptr : entry;
        }
    return nullptr;
}

bool isOpenedFrom(const EntryIndex& index, const Process& process, const DesktopEntry& opener,
                  const DesktopEntryRef& ownEntry) {
    return ownEntry && ownEntry->isShown && ownEntry->id != opener.id &&
           !index.runs(opener, process.program());
}

DesktopEntryRef entryOfProcess(const EntryIndex& index, const Process& process) {
    // Of an interpreter its script only: the interpreter's own entry says nothing of what it runs.
    DesktopEntryRef ofFile = index.withProgram(process.program());
    DesktopEntryRef ofScope = entryOfScope(index, process);
    if (ofScope && !isOpenedFrom(index, process, *ofScope, ofFile))
        return ofScope;
    return ofFile ? ofFile : index.withProgramLike(process.program());
}

/// Anybody may call a file of their own like an application.
bool hasTellingName(const EntryIndex& index, const Process& process) {
    const std::string& program = process.program();
    return program.empty() || isWindowsPath(program) || index.isInstalled(program);
}

DesktopEntryRef entryOfWindowClass(const EntryIndex& index, std::string_view fileName) {
    if (fileName.empty() || isInterpreter(fileName))
        return nullptr;
    return index.withWindowClass(fileName);
}

} // namespace

DesktopEntryRef entryOfProgram(const EntryIndex& index, const Process* process,
                               const AudioClient* client) {
    if (process != nullptr)
        if (auto entry = entryOfSandbox(index, *process))
            return entry;
    if (client != nullptr && !client->applicationID.empty())
        if (auto entry = entryOfApplicationID(index, client->applicationID))
            return entry;
    if (process != nullptr) {
        if (auto entry = entryOfProcess(index, *process))
            return entry;
        if (!hasTellingName(index, *process))
            return nullptr;
        if (auto entry = entryOfWindowClass(index, fileNameOf(process->program())))
            return entry;
    }
    return client == nullptr ? nullptr : entryOfWindowClass(index, client->binary);
}

} // namespace orvanta::desktop
