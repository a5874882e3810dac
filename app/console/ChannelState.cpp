#include "app/console/ChannelState.h"

namespace orvanta {

ChannelState channelStateOf(const MixerViewModel& model, std::int32_t pid, const RowState& row) {
    const ChannelState defaults;
    return {
        .row = row,
        .isSoloed = model.soloedPIDs.get().contains(pid),
        .isLimiting = valueOr(model.limiterEnabled.get(), pid, defaults.isLimiting),
        .isNormalizing = valueOr(model.normalizationEnabled.get(), pid, defaults.isNormalizing),
        .stereoWidth = valueOr(model.stereoWidths.get(), pid, defaults.stereoWidth),
        .crossfeed = valueOr(model.crossfeedAmounts.get(), pid, defaults.crossfeed),
    };
}

} // namespace orvanta
