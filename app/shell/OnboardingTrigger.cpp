#include "app/shell/OnboardingTrigger.h"

#include "app/shell/WindowNames.h"

namespace orvanta {

void OnboardingTrigger::panelAppeared() {
    if (hasAppeared_)
        return;
    hasAppeared_ = true;
    if (hasCompleted())
        return;
    mainRunLoop_.postAfter(delay, [&windows = windows_] {
        windows.open(kOnboardingWindow.identifier);
        windows.activateIgnoringOtherApps();
    });
}

} // namespace orvanta
