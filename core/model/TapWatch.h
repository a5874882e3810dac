#pragma once

#include "core/model/PIDMap.h"
#include "core/platform/RunLoop.h"

#include <cstdint>

namespace orvanta {

/// What the two watchdogs remember of each tap. The first two belong to the one that looks for taps
/// whose callback has never run, the others to the one that looks for taps that deliver nothing.
struct TapWatch {
    /// Refresh passes in a row that found no callback.
    PIDMap<std::int64_t> deadTapPollCounts;
    /// Rebuilds so far.
    PIDMap<std::int64_t> deadTapRebuildCount;

    /// Diagnostic ticks that found the tap stalled, since the last reset.
    PIDMap<std::int64_t> stallPollCounts;
    /// When the last retap began, on the main run loop's clock.
    PIDMap<Seconds> lastRetapTime;
    /// Taps that have shown sound at their input.
    PIDSet hasReceivedAudio;
    /// Diagnostic ticks without sound since it was last seen.
    PIDMap<std::int64_t> silentSinceAudioCount;
    /// Retaps since sound was last seen.
    PIDMap<std::int64_t> consecutiveRetapCount;
};

} // namespace orvanta
