#pragma once

#include "core/platform/UserFolders.h"
#include "platform/linux/desktop/DesktopFolders.h"

namespace orvanta {

/// The folders that the user has chosen in `user-dirs.dirs` below `configHome`, and where that file
/// names none, or cannot be read, Music, Documents and Downloads in the home folder. Whoever
/// chooses the home folder itself has no folder of that kind. Without a home folder ("/" is none)
/// there are only those that the file names in full.
[[nodiscard]] UserFolders userFoldersOf(const DesktopFolders& desktop);

} // namespace orvanta
