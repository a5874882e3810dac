#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orvanta::desktop {

/// The id of the Flatpak that a process lives in, as its sandbox's file tells; empty where it lives
/// in none. Nobody's files are touched but those of a mount namespace that looks like a Flatpak's:
/// a root in memory, on which nothing can be waited for, unlike one of a network or of FUSE.
[[nodiscard]] std::string flatpakIDOfProcess(int procFolder, std::int32_t pid);

/// The application's id in a sandbox's file ".flatpak-info"; empty where it tells none.
[[nodiscard]] std::string flatpakIDInInfo(std::string_view text);

} // namespace orvanta::desktop
