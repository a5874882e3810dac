#include "app/popover/RowState.h"

namespace orvanta {

RowState rowStateOf(const MixerViewModel& model, const AudioApp& app, Seconds now) {
    const RowState defaults;
    return {
        .name = app.name,
        .icon = app.icon,
        .section = sectionOf(app, model.lastActiveTime(), now),
        .isTapped = model.isTapped(app.pid),
        .isMuted = model.isMuted(app.pid),
        .isRecording = model.isRecording(app.pid),
        .volume = model.volume(app.pid),
        .balance = model.balance(app.pid),
        .eq = model.eqPreset(app.pid),
        .compressor = model.getCompressor(app.pid),
        .isGateEnabled = valueOr(model.noiseGateEnabled.get(), app.pid, defaults.isGateEnabled),
        .gateThreshold = valueOr(model.noiseGateThresholds.get(), app.pid, defaults.gateThreshold),
        .outputUID = model.outputDeviceUID(app.pid),
    };
}

} // namespace orvanta
