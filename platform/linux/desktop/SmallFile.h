#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace orvanta::desktop {

/// The whole text of a file that somebody else wrote. Nothing when it cannot be read, has more than
/// `maximumSize` bytes, or is something that one could wait for: a pipe, a socket, a device.
[[nodiscard]] std::optional<std::string> readSmallFile(const std::filesystem::path& file,
                                                       std::size_t maximumSize);

/// The same, but of a longer file its first `size` bytes.
[[nodiscard]] std::optional<std::string> readFileStart(const std::filesystem::path& file,
                                                       std::size_t size);

/// The same, with a path that begins at the open folder `folder`.
[[nodiscard]] std::optional<std::string> readFileStart(int folder, const std::string& file,
                                                       std::size_t size);

/// The same for a file in the folder itself that is neither a link nor more than `maximumSize`
/// bytes long. Anything but a regular file is not even opened: opening a device may set it going.
[[nodiscard]] std::optional<std::string> readUnlinkedFile(int folder, const char* name,
                                                          std::size_t maximumSize);

} // namespace orvanta::desktop
