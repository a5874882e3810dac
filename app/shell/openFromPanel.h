#pragma once

#include "app/shell/ShellWindows.h"

#include <string_view>

namespace orvanta {

/// Opens a window out of the panel, which gives way to it: the panel closes first, so that it is
/// not the one that the desktop takes to the front with the program.
inline void openFromPanel(ShellWindows& windows, std::string_view identifier) {
    windows.closeKeyWindow();
    windows.open(identifier);
    windows.activateIgnoringOtherApps();
}

} // namespace orvanta
