#pragma once

#include "core/platform/HostInfo.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace orvanta {

/// What this process finds itself on. The versions are the program's own.
[[nodiscard]] HostInfo linuxHost(std::optional<std::string> shortVersion,
                                 std::optional<std::string> bundleVersion);

/// The environment's HOME where that is an absolute path, else what the password database says;
/// "/" where neither knows.
[[nodiscard]] std::filesystem::path userHomeDirectory();

/// "Debian GNU/Linux 12 (bookworm)": PRETTY_NAME of the first of these os-release files that can be
/// read. Where it tells nothing fit to be shown, the kernel's name and release.
[[nodiscard]] std::string
operatingSystemVersion(const std::vector<std::filesystem::path>& releaseFiles);

} // namespace orvanta
