#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>

namespace orvanta::desktop {

/// Which folder lies at a path, links followed, and when the kernel last saw it change: a time
/// that nobody can set, unlike that of the last modification. All zero where there is none.
struct FolderState {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::chrono::nanoseconds changed{0}; ///< since 1970

    bool operator==(const FolderState&) const = default;
};

[[nodiscard]] FolderState stateOf(const std::filesystem::path& folder);

} // namespace orvanta::desktop
