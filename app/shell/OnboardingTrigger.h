#pragma once

#include "app/shell/ShellWindows.h"
#include "core/platform/RunLoop.h"
#include "core/platform/UserDefaults.h"

#include <string_view>

namespace orvanta {

/// Welcomes a user who has not yet been through the welcome pages to their end.
class OnboardingTrigger {
public:
    /// Where it is stored that they have.
    static constexpr std::string_view defaultsKey = "com.meridane.orvanta.hasCompletedOnboarding";
    static constexpr Seconds delay{0.5};

    /// All must outlive the delay.
    OnboardingTrigger(UserDefaults& defaults, ShellWindows& windows, RunLoop& mainRunLoop)
        : defaults_(defaults), windows_(windows), mainRunLoop_(mainRunLoop) {}

    /// Opens the welcome window a moment after the panel has appeared for the first time.
    void panelAppeared();

    [[nodiscard]] bool hasCompleted() const { return defaults_.boolean(defaultsKey); }

    void complete() { defaults_.setBoolean(defaultsKey, true); }

private:
    UserDefaults& defaults_;
    ShellWindows& windows_;
    RunLoop& mainRunLoop_;
    bool hasAppeared_ = false;
};

} // namespace orvanta
