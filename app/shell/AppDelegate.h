#pragma once

#include "app/shell/ShellWindows.h"
#include "core/platform/RunLoop.h"

namespace orvanta {

/// What an application is asked before it ends; the others would be no and later.
inline constexpr int NSTerminateNow = 1;

/// What the desktop tells the application of its own life.
class AppDelegate {
public:
    /// Windows that a desktop has opened by itself are closed so long after the launch.
    static constexpr Seconds sweepDelay{0.1};

    /// Both must outlive the sweep.
    AppDelegate(ShellWindows& windows, RunLoop& mainRunLoop)
        : windows_(windows), mainRunLoop_(mainRunLoop) {}

    /// Only the panel's icon is to show at first: closes the named windows, a moment later.
    void applicationDidFinishLaunching();

    /// At once, without a question.
    [[nodiscard]] static int applicationShouldTerminate() noexcept { return NSTerminateNow; }

private:
    ShellWindows& windows_;
    RunLoop& mainRunLoop_;
};

} // namespace orvanta
