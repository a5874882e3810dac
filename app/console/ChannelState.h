#pragma once

#include "app/popover/RowState.h"

#include <cstdint>

namespace orvanta {

/// What the console shows of a tapped application, but for what moves by itself. Two that are equal
/// look the same.
struct ChannelState {
    RowState row;
    bool isSoloed = false;
    bool isLimiting = false;
    bool isNormalizing = false;
    float stereoWidth = 1.0F; ///< 0 (mono) to 2
    float crossfeed = 0.0F;   ///< 0 to 1

    friend bool operator==(const ChannelState&, const ChannelState&) = default;
};

/// Of the process that the row is of, as the model has it now; defaults for what it has not.
[[nodiscard]] ChannelState channelStateOf(const MixerViewModel& model, std::int32_t pid,
                                          const RowState& row);

} // namespace orvanta
