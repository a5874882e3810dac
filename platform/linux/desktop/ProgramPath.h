#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orvanta::desktop {

/// Whether a program lies where packages put theirs. Elsewhere, in a home say, files are called as
/// anybody likes.
[[nodiscard]] bool isInstalledByPackage(std::string_view path);

/// Empty for a program that is named without one.
[[nodiscard]] std::string folderOf(const std::string& program);

/// The folder of a program that holds nothing but this program and its parts: one of a system
/// package, or one that is called like the program. Empty for /usr/bin, a home and their like.
[[nodiscard]] std::string ownFolderOf(const std::string& program);

/// What a program may be called, best first: its file, that without an ending such as ".py", and,
/// where system packages install, the two folders above: /usr/lib/player/player-bin is "player".
[[nodiscard]] std::vector<std::string> namesOf(const std::string& program);

/// The path of an executable as /proc links to it. The kernel marks one whose file is gone, after
/// an update say: the mark is taken off, unless a file is really called so.
[[nodiscard]] std::string withoutDeletedMark(std::string path);

/// Where a program really lies: links followed, a name without a folder looked for in `folders`.
/// Empty when it is not found; a path that does not exist stays as it is, and so does a Windows
/// path.
[[nodiscard]] std::string locatedProgram(const std::string& program,
                                         const std::vector<std::filesystem::path>& folders);

} // namespace orvanta::desktop
