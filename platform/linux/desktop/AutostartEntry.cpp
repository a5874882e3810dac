#include "platform/linux/desktop/AutostartEntry.h"

#include "platform/linux/Descriptor.h"
#include "platform/linux/desktop/KeyFile.h"
#include "platform/linux/desktop/SmallFile.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace orvanta {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaximumEntrySize = 65536;

std::string errorText(int number) {
    return std::generic_category().message(number);
}

/// A text as a value of a key: line ends and backslashes are escaped.
std::string escaped(std::string_view text) {
    std::string value;
    for (const char character : text) {
        if (character == '\\')
            value += "\\\\";
        else if (character == '\n')
            value += "\\n";
        else
            value += character;
    }
    return value;
}

/// An argument of a command line, in quotes whether it needs them or not.
std::string execArgument(std::string_view argument) {
    std::string text = "\"";
    for (const char character : argument) {
        if (std::string_view("\"`$\\").find(character) != std::string_view::npos)
            text += '\\';
        if (character == '%')
            text += '%';
        text += character;
    }
    return text + '"';
}

bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// Nothing when the file has that text now.
std::optional<std::string> replaceFile(const fs::path& file, std::string_view text) {
    const fs::path written = file.string() + ".new";
    const Descriptor descriptor(
        open(written.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0644));
    // Whatever the umask: a session may read it as somebody else.
    const bool isWritten = descriptor.number() >= 0 && fchmod(descriptor.number(), 0644) == 0 &&
                           writeAll(descriptor.number(), text) && fsync(descriptor.number()) == 0 &&
                           std::rename(written.c_str(), file.c_str()) == 0;
    if (isWritten)
        return std::nullopt;
    const int number = errno;
    unlink(written.c_str());
    return errorText(number);
}

} // namespace

AutostartEntry::AutostartEntry(const fs::path& configHome, Program program)
    : file_(configHome / "autostart" / (program.identifier + ".desktop")),
      program_(std::move(program)) {}

bool AutostartEntry::isRegistered() const {
    const auto text = desktop::readSmallFile(file_, kMaximumEntrySize);
    if (!text)
        return false;
    bool isOn = false;
    desktop::KeyFileReader reader(*text);
    while (const auto line = reader.next()) {
        if (line->group != "Desktop Entry")
            continue;
        isOn = isOn || (line->key == "Exec" && line->value == command());
        const bool isSwitchedOff =
            (line->key == "Hidden" && line->value == "true") ||
            (line->key == "X-GNOME-Autostart-enabled" && line->value == "false");
        if (isSwitchedOff)
            return false;
    }
    return isOn;
}

std::optional<std::string> AutostartEntry::registerItem() {
    std::error_code error;
    fs::create_directories(file_.parent_path(), error);
    if (error)
        return error.message();
    return replaceFile(file_, entryText());
}

std::optional<std::string> AutostartEntry::unregisterItem() {
    std::error_code error;
    fs::remove(file_, error);
    const bool isGone = !error || error == std::errc::not_a_directory;
    return isGone ? std::nullopt : std::optional(error.message());
}

std::string AutostartEntry::command() const {
    return escaped(execArgument(program_.executable.string()));
}

std::string AutostartEntry::entryText() const {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=" +
           escaped(program_.name) + "\nExec=" + command() +
           "\nIcon=" + escaped(program_.identifier) +
           "\nTerminal=false\n"
           "X-GNOME-Autostart-enabled=true\n";
}

} // namespace orvanta
