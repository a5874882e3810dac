#include "app/automation/OrvantaIntentBridge.h"

#include <utility>

namespace orvanta {

std::optional<OrvantaIntentBridge> OrvantaIntentBridge::shared;

OrvantaIntentBridge::OrvantaIntentBridge(std::weak_ptr<MixerViewModel> model)
    : viewModel(std::move(model)) {}

void OrvantaIntentBridge::panelAppeared(const std::weak_ptr<MixerViewModel>& model) {
    if (!shared)
        shared.emplace(model);
}

std::shared_ptr<MixerViewModel> OrvantaIntentBridge::sharedModel() {
    return shared ? shared->viewModel.lock() : nullptr;
}

} // namespace orvanta
