#pragma once

#include "core/model/MixerViewModel.h"

#include <memory>
#include <optional>

namespace orvanta {

/// The one way by which intents reach the mixer. All of it belongs to the main thread.
class OrvantaIntentBridge {
public:
    explicit OrvantaIntentBridge(std::weak_ptr<MixerViewModel> model);

    /// None until the panel has first appeared; set then, once, and never cleared.
    static std::optional<OrvantaIntentBridge> shared;

    /// The panel has appeared over this model, which `shared` leads to from the first time on.
    static void panelAppeared(const std::weak_ptr<MixerViewModel>& model);

    /// The model that `shared` leads to, kept until the caller is done with it; null where there is
    /// no bridge yet, or the model has gone.
    [[nodiscard]] static std::shared_ptr<MixerViewModel> sharedModel();

    /// Weak, because automation must not keep taps alive.
    std::weak_ptr<MixerViewModel> viewModel;
};

} // namespace orvanta
