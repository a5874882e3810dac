#pragma once

#include "core/platform/AudioClient.h"
#include "platform/linux/desktop/EntryIndex.h"
#include "platform/linux/processes/Process.h"

namespace orvanta::desktop {

/// The entry of what a process itself runs, its parents left aside; null when there is none.
/// Either may be null: a process that plays nothing, a client whose process cannot be seen.
///
/// The first that answers counts:
///  1. the Flatpak or Snap that the process lives in, which is set up before it runs;
///  2. the application id that it gives the audio server;
///  3. the control group that the session started it in, unless the process runs the very file of
///     another application: a file manager's group holds the player that was opened from it;
///  4. its executable, or the script of an interpreter: the very file of an entry, then one in its
///     folder or, if it is installed, of its name, since an entry often names a start script;
///  5. a window class of the installed program's name.
/// The group of a terminal, a file manager or an entry that menus do not show names their own file
/// only: whatever is started there lives in it.
[[nodiscard]] DesktopEntryRef entryOfProgram(const EntryIndex& index, const Process* process,
                                             const AudioClient* client);

} // namespace orvanta::desktop
