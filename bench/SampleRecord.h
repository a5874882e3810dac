#pragma once

#include "core/persistence/AppSettings.h"

namespace orvanta::bench {

/// An application with most effects set, on the default output.
inline AppSettings sampleRecord(float volume, bool isTapped = true) {
    return {.volume = volume,
            .isMuted = false,
            .isTapped = isTapped,
            .eqPreset = EQPreset::rock,
            .balance = -0.1F,
            .compressorPreset = CompressorPreset::nightMode,
            .limiterEnabled = true,
            .normalizationEnabled = false,
            .stereoWidth = 1.2F,
            .crossfeedAmount = 0.3F};
}

} // namespace orvanta::bench
