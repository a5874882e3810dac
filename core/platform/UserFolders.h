#pragma once

#include <filesystem>
#include <optional>

namespace orvanta {

/// Where the user keeps things, as the desktop has it. Absent where the desktop names no such
/// folder. None of them need exist.
struct UserFolders {
    std::optional<std::filesystem::path> music = std::nullopt;
    std::optional<std::filesystem::path> documents = std::nullopt;
    std::optional<std::filesystem::path> downloads = std::nullopt;
    std::filesystem::path temporary{};
};

} // namespace orvanta
