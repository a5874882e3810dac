#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace orvanta {

/// What a file at this address is called once it is downloaded: the address's last part without
/// anything that means something in a folder, or the version where that leaves nothing.
[[nodiscard]] std::string downloadName(std::string_view url, std::string_view version);

/// Where a file stands, or why it does not, for people to read.
struct SavedDownload {
    std::filesystem::path file{};
    std::string failure{};
};

/// Writes a new file, whole or not at all. It gets a number where the folder has another file of
/// that name; one with the same content is the file. Makes the folder where it is missing.
[[nodiscard]] SavedDownload saveDownload(const std::filesystem::path& folder,
                                         const std::string& name, std::string_view content);

} // namespace orvanta
