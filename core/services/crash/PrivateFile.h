#pragma once

#include "core/services/crash/Descriptor.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace orvanta::crash {

/// Makes the folder and those above it that are missing, for the user alone (0700) whatever the
/// umask. Failures stay silent: what is written there later fails as well.
void makePrivateFolders(const std::filesystem::path& folder);

/// All bytes of a regular file; nothing when it cannot be read or is something to wait for.
[[nodiscard]] std::optional<std::string> contentOfFile(const std::filesystem::path& file);

/// A regular file that is appended to. Made where it is missing, for the user alone (0600) whatever
/// the umask; one that is there keeps its permissions. Child programs do not inherit it, and its
/// descriptor is none of the standard three, also in a program that was started without them.
class PrivateFile {
public:
    explicit PrivateFile(const std::filesystem::path& file);

    /// False when the file could not be opened or not all was written.
    [[nodiscard]] bool append(std::string_view text) const noexcept;

    /// Hands the descriptor over, which is negative when the file could not be opened.
    [[nodiscard]] int release() noexcept { return descriptor_.release(); }

private:
    Descriptor descriptor_;
};

} // namespace orvanta::crash
