#pragma once

#include "platform/linux/desktop/DesktopFolders.h"

#include <string>

namespace orvanta::desktop {

/// The user's icon theme, as GTK's or else KDE's settings name it; empty where neither does.
[[nodiscard]] std::string iconThemeName(const DesktopFolders& folders);

} // namespace orvanta::desktop
