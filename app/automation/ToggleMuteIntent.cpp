#include "app/automation/ToggleMuteIntent.h"

#include "app/automation/OrvantaIntentBridge.h"

namespace orvanta {
namespace {

/// Whether everything is muted then.
bool toggleMute() {
    const auto model = OrvantaIntentBridge::sharedModel();
    if (!model)
        return false;
    model->toggleMuteAll();
    return model->isMasterMuted.get();
}

} // namespace

std::string ToggleMuteIntent::perform() {
    return toggleMute() ? "All audio muted" : "Audio unmuted";
}

} // namespace orvanta
