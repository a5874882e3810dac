#include "platform/linux/applications/MembershipFinder.h"

#include "platform/linux/applications/EntryOfProgram.h"
#include "platform/linux/desktop/CommandLine.h"
#include "platform/linux/desktop/KeyFile.h"
#include "platform/linux/desktop/ProgramPath.h"
#include "platform/linux/icons/IconTheme.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace orvanta::desktop {
namespace {

/// Longer chains of parents are loops: ids are used again while we look.
constexpr int kMostAncestors = 32;

constexpr std::int32_t kFirstProcess = 1;

/// A child of an interpreter's may run the same interpreter for a script of its own.
bool runsTheSame(const Process& process, const Process& ancestor) {
    const bool isSameFile =
        !process.executable.empty() && process.executable == ancestor.executable;
    return isSameFile && (process.script.empty() || process.script == ancestor.script);
}

bool isPartOf(const Process& process, const Process& ancestor, const DesktopEntry& entry) {
    if (runsTheSame(process, ancestor))
        return true;
    const std::string folder = ownFolderOf(ancestor.program());
    if (!folder.empty() && folder == folderOf(process.program()))
        return true;
    return process.session > 0 && process.session == ancestor.session && entry.isShown &&
           !entry.startsOthers;
}

/// The process above that runs a script on the interpreter which `process` runs without one: that
/// is a helper, whatever the interpreter's own entry says. Null for all others.
const Process* scriptAbove(const Process& process, const RunningProcesses& processes) {
    const Process* above = &process;
    for (int steps = 0; steps < kMostAncestors && above->script.empty(); ++steps) {
        const Process* const parent = processes.find(above->parent);
        if (parent == nullptr || process.executable.empty() ||
            parent->executable != process.executable)
            return nullptr;
        above = parent;
    }
    return above == &process || above->script.empty() ? nullptr : above;
}

Membership memberOf(std::int32_t pid, const DesktopEntryRef& entry, bool isClient) {
    Membership member;
    member.pid = pid;
    member.entry = entry;
    member.name = entry->name;
    member.icon = entry->icon;
    if (!entry->isShown && !isClient)
        member.policy = ActivationPolicy::accessory;
    member.identity = entry->id;
    member.shortLabel = entry->programs.empty() ? entry->id : fileNameOf(entry->programs.front());
    member.longLabel = entry->id;
    return member;
}

/// Nothing for a client that gives no name at all.
std::optional<Membership> memberOnItsOwn(std::int32_t pid, const AudioClient& client,
                                         const Process* process) {
    const std::string shortName = process != nullptr ? process->name : std::string();
    const std::string program = process != nullptr ? process->program() : std::string();
    Membership member;
    member.pid = pid;
    for (const std::string& name : {client.name, client.binary, shortName})
        if (member.name.empty() && isDisplayText(name))
            member.name = name;
    if (member.name.empty())
        return std::nullopt;
    // Not a path: any program might have us draw any file.
    if (isPlainName(client.iconName))
        member.icon = client.iconName;
    for (const std::string& label : {program, client.binary, shortName, member.name})
        if (member.longLabel.empty() && isDisplayText(label))
            member.longLabel = label;
    member.shortLabel = fileNameOf(member.longLabel);
    // A slash cannot stand in an entry's id.
    member.identity = "/" + member.longLabel;
    return member;
}

std::vector<const Process*> inOrderOfStart(const RunningProcesses& processes) {
    std::vector<const Process*> order;
    for (const auto& [pid, process] : processes.all())
        order.push_back(&process);
    std::stable_sort(order.begin(), order.end(), [](const Process* a, const Process* b) {
        return a->startTime < b->startTime;
    });
    return order;
}

} // namespace

const Process* processOfClient(const RunningProcesses& processes, const AudioClient& client) {
    const Process* const outside = processes.find(client.pid);
    const bool isSandboxed = outside != nullptr && outside->flatpakID == client.applicationID;
    if (client.applicationID.empty() || isSandboxed)
        return outside;
    const Process* const inside = processes.findInFlatpak(client.applicationID, client.pid);
    return inside != nullptr ? inside : outside;
}

std::vector<Membership> MembershipFinder::find(const EntryIndex& index,
                                               const RunningProcesses& processes,
                                               const std::vector<AudioClient>& clients) {
    Clients byProcess;
    Clients elsewhere; // by an id that is not, or not theirs, outside
    for (const AudioClient& client : clients) {
        const Process* const process = processOfClient(processes, client);
        if (process != nullptr)
            byProcess.emplace(process->pid, &client);
        if (process == nullptr || process->pid != client.pid)
            elsewhere.emplace(client.pid, &client);
    }
    learnEntries(index, processes, byProcess);

    std::vector<Membership> members;
    const auto add = [&members](std::optional<Membership> member) {
        if (member)
            members.push_back(*std::move(member));
    };
    for (const Process* process : inOrderOfStart(processes)) {
        const auto client = byProcess.find(process->pid);
        const bool isClient = client != byProcess.end();
        if (elsewhere.contains(process->pid))
            continue;
        if (const DesktopEntryRef entry = entryOf(*process, processes))
            add(memberOf(process->pid, entry, isClient));
        else if (isClient)
            add(memberOnItsOwn(process->pid, *client->second, process));
    }
    for (const auto& [pid, client] : elsewhere) {
        const Process* const process = processOfClient(processes, *client);
        const DesktopEntryRef entry = process != nullptr ? entryOf(*process, processes)
                                                         : entryOfProgram(index, nullptr, client);
        add(entry ? memberOf(pid, entry, true) : memberOnItsOwn(pid, *client, process));
    }
    makeNamesDistinct(members);
    return members;
}

void MembershipFinder::learnEntries(const EntryIndex& index, const RunningProcesses& processes,
                                    const Clients& clients) {
    static const AudioClient kNoClient;
    std::erase_if(known_, [&](const auto& known) { return !processes.find(known.first); });
    for (const auto& [pid, process] : processes.all()) {
        const auto found = clients.find(pid);
        const AudioClient& client = found == clients.end() ? kNoClient : *found->second;
        Known& known = known_[pid];
        if (known.revision == process.revision && known.applicationID == client.applicationID &&
            known.binary == client.binary)
            continue;
        known = {process.revision, client.applicationID, client.binary,
                 entryOfProgram(index, &process, &client)};
    }
}

DesktopEntryRef MembershipFinder::entryOf(const Process& process,
                                          const RunningProcesses& processes) const {
    if (const Process* const main = scriptAbove(process, processes))
        return entryOf(*main, processes);
    const auto found = known_.find(process.pid);
    if (found != known_.end() && found->second.entry)
        return found->second.entry;
    return entryOfAncestor(process, processes);
}

DesktopEntryRef MembershipFinder::entryOfAncestor(const Process& process,
                                                  const RunningProcesses& processes) const {
    const Process* ancestor = processes.find(process.parent);
    for (int steps = 0; steps < kMostAncestors && ancestor != nullptr; ++steps) {
        if (ancestor->pid == kFirstProcess)
            return nullptr;
        const auto found = known_.find(ancestor->pid);
        if (found != known_.end() && found->second.entry) {
            const DesktopEntryRef& entry = found->second.entry;
            return isPartOf(process, *ancestor, *entry) ? entry : nullptr;
        }
        ancestor = processes.find(ancestor->parent);
    }
    return nullptr;
}

} // namespace orvanta::desktop
