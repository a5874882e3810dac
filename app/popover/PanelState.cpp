#include "app/popover/PanelState.h"

#include <algorithm>

namespace orvanta {

PanelState panelStateOf(const MixerViewModel& model) {
    const auto& apps = model.audioApps.get();
    const auto isPlaying = std::ranges::count_if(apps, &AudioApp::isPlaying);
    return {
        .apps = apps.size(),
        .tapped = model.tappedPIDs.get().size(),
        .playing = static_cast<std::size_t>(isPlaying),
        .isAutoTapOn = model.autoTapEnabled.get(),
        .masterVolume = model.masterVolume.get(),
        .isMasterMuted = model.isMasterMuted.get(),
        .launchesAtLogin = model.launchAtLogin.get(),
    };
}

} // namespace orvanta
