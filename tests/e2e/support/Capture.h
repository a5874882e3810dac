#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvanta::test {

/// What was recorded: channels of equal length, aligned to the sample.
struct Capture {
    /// One graph cycle of the recording.
    struct Cycle {
        std::size_t firstFrame = 0;
        std::uint32_t frames = 0;
        /// Monotonic clock at its start, in seconds.
        double time = 0;
        /// The graph's clock did not run straight on from the cycle before.
        bool isDiscontinuous = false;
    };

    std::vector<std::vector<float>> channels;
    std::vector<Cycle> cycles;
    std::uint32_t sampleRate = 0;

    [[nodiscard]] std::size_t frames() const { return channels.empty() ? 0 : channels[0].size(); }

    /// A part of the recording, from the given frame on.
    [[nodiscard]] Capture from(std::size_t firstFrame) const;
    [[nodiscard]] std::size_t discontinuities() const;
};

} // namespace orvanta::test
