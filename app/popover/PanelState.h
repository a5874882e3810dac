#pragma once

#include "core/model/MixerViewModel.h"

#include <cstddef>

namespace orvanta {

/// What the panel shows around its list, but for the master slider, which has a hand on it. Two
/// that are equal look the same.
struct PanelState {
    std::size_t apps = 0;
    std::size_t tapped = 0;
    std::size_t playing = 0;
    bool isAutoTapOn = false;
    float masterVolume = 1.0F; ///< 0 to 1
    bool isMasterMuted = false;
    bool launchesAtLogin = false;

    friend bool operator==(const PanelState&, const PanelState&) = default;
};

/// As the model has it now.
[[nodiscard]] PanelState panelStateOf(const MixerViewModel& model);

} // namespace orvanta
