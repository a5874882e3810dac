#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvanta::desktop {

/// The words of an entry's Exec value, already unescaped: quotes and backslashes resolved, the
/// codes that stand for files and addresses taken out. A quote without its end reaches to the end
/// of the line.
[[nodiscard]] std::vector<std::string> execWords(std::string_view line);

/// Python, a shell, Electron, Wine …: programs whose name says nothing of what they run.
[[nodiscard]] bool isInterpreter(std::string_view fileName);

/// What an interpreter runs: the first argument that is no option, or the module or archive that
/// an option names. Nothing for code given on the command line itself. `interpreter`: its file's
/// name; `arguments`: those behind it.
[[nodiscard]] std::optional<std::string> scriptOf(std::string_view interpreter,
                                                  std::span<const std::string> arguments);

/// What a command runs behind env, nohup, a shell's -c and interpreters. Nothing where a sandbox's
/// launcher hides it.
[[nodiscard]] std::optional<std::string> programOfCommand(std::vector<std::string> words);

/// "C:\player.exe": how Wine's programs know themselves.
[[nodiscard]] bool isWindowsPath(std::string_view path);

/// The part behind the last slash, or backslash of a Windows path.
[[nodiscard]] std::string_view fileNameOf(std::string_view path);

} // namespace orvanta::desktop
