#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvanta {

/// The program's windows, as the shell uses them. All of it belongs to the main thread.
class ShellWindows {
public:
    ShellWindows() = default;
    ShellWindows(const ShellWindows&) = delete;
    ShellWindows& operator=(const ShellWindows&) = delete;
    virtual ~ShellWindows() = default;

    /// Opens the window with this identifier, or shows the one that is open.
    virtual void open(std::string_view identifier) = 0;

    /// Titles of all windows there are, the panel's among them.
    [[nodiscard]] virtual std::vector<std::string> titles() const = 0;

    /// The first window with this title; nothing where there is none.
    virtual void close(std::string_view title) = 0;
    virtual void makeKeyAndOrderFront(std::string_view title) = 0;

    /// The window that has the keyboard, if one of ours has it.
    virtual void closeKeyWindow() = 0;

    /// Brings the program before all others.
    virtual void activateIgnoringOtherApps() = 0;
};

} // namespace orvanta
