#pragma once

#include "core/platform/AudioClient.h"
#include "platform/linux/applications/Membership.h"
#include "platform/linux/desktop/EntryIndex.h"
#include "platform/linux/processes/RunningProcesses.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace orvanta::desktop {

/// Tells of all processes at once which application each belongs to: that of what it runs
/// (EntryOfProgram.h); or else its nearest ancestor's that has one, if it is a part of that; or
/// else, if it plays, an application of its own under the name it gives the audio server.
///
/// A process is a part of its ancestor's application if it runs the same file, or one in that
/// file's own folder, or is in the same session and the ancestor is a plain application: no
/// terminal, no file manager, nothing that menus do not show. That makes a browser's audio service
/// the browser, and leaves a player started in a terminal alone.
class MembershipFinder {
public:
    /// One for each process that belongs to one and each client that does, processes in the order
    /// of their start: an application's first comes before its helpers. Names are distinct.
    [[nodiscard]] std::vector<Membership> find(const EntryIndex& index,
                                               const RunningProcesses& processes,
                                               const std::vector<AudioClient>& clients);

    /// To be called when the entries have changed.
    void forgetEntries() { known_.clear(); }

private:
    /// The entry of what a process runs, and what it was found by.
    struct Known {
        std::uint64_t revision = 0;
        std::string applicationID;
        std::string binary;
        DesktopEntryRef entry;
    };

    using Clients = std::map<std::int32_t, const AudioClient*>;

    void learnEntries(const EntryIndex& index, const RunningProcesses& processes,
                      const Clients& clients);
    [[nodiscard]] DesktopEntryRef entryOf(const Process& process,
                                          const RunningProcesses& processes) const;
    [[nodiscard]] DesktopEntryRef entryOfAncestor(const Process& process,
                                                  const RunningProcesses& processes) const;

    std::map<std::int32_t, Known> known_;
};

/// The process behind a client; null when it cannot be seen. A Flatpak program may have told the
/// server the id that it has inside: then it is the process of this Flatpak with that inner id.
[[nodiscard]] const Process* processOfClient(const RunningProcesses& processes,
                                             const AudioClient& client);

} // namespace orvanta::desktop
