#include "app/shell/ConsoleHotKey.h"

#include "app/shell/WindowNames.h"
#include "core/model/MixerViewModel.h"

#include <string>

namespace orvanta {

ConsoleHotKey::ConsoleHotKey(NotificationCenter& notifications, ShellWindows& windows)
    // The panel opens the window and the window comes to the front: whoever hears it first, the
    // console is there, before all others and with the keyboard.
    : panel_(notifications.observe(std::string(MixerViewModel::toggleCommandCenter),
                                   [&windows] {
                                       windows.open(kConsoleWindow.identifier);
                                       windows.activateIgnoringOtherApps();
                                   })),
      console_(notifications.observe(std::string(MixerViewModel::toggleCommandCenter), [&windows] {
          windows.activateIgnoringOtherApps();
          windows.makeKeyAndOrderFront(kConsoleWindow.title);
      })) {}

} // namespace orvanta
