#pragma once

#include "tests/support/reference/Equaliser.h"
#include "tests/support/reference/Limiter.h"
#include "tests/support/reference/Normalization.h"
#include "tests/support/reference/ReferenceCompressor.h"
#include "tests/support/reference/Stereo.h"

#include <cstdint>
#include <optional>
#include <vector>

/// The render callback once more, written to be obviously right and for nothing else: one sample
/// after the other, everything by value, plain processors, no shared code with the real one. Random
/// cases compare both.
namespace orvanta::test {

struct NaiveBuffer {
    std::uint32_t channels = 1;
    std::uint32_t bytes = 0;
    /// None stands for a null pointer.
    std::optional<std::vector<float>> samples;
};

class NaiveRender {
public:
    float volume = 1;
    bool isMuted = false;
    float balance = 0;
    bool limiterEnabled = false;
    bool normalizationEnabled = false;
    float stereoWidth = 1;
    bool gateEnabled = false;
    float gateThreshold = 0.001F;

    float peakLevel = 0;
    float rmsLevel = 0;
    std::uint64_t callbackCount = 0;
    int silentCallbackCount = 0;
    bool gateOpen = true;
    std::uint64_t gateSilentCount = 0;
    float gateFadeGain = 1;
    float inPeak = 0;
    std::int64_t inBuffers = 0;
    std::int64_t inBytes = 0;
    std::int64_t pairs = 0;
    std::int64_t inSamples = 0;
    std::int64_t outSamples = 0;
    reference::Normalization normalizer{48000.0};
    reference::Equaliser equaliser{48000.0, 2};
    reference::Compressor<reference::ApproximatePowers> compressor{48000.0, 2, 4096};
    reference::Limiter limiter{48000.0, 2};
    reference::Crossfeed crossfeed{48000.0};

    void render(const std::vector<NaiveBuffer>& in, std::vector<NaiveBuffer>& out);

private:
    void renderPair(const NaiveBuffer& in, NaiveBuffer& out, int index, int pairCount);
    void runEffects(std::vector<float>& samples, int count, int index);
    void runStereoStage(std::vector<NaiveBuffer>& out, int pairCount);
    void balancePair(NaiveBuffer& out, int samples, int index, int pairCount) const;
    void meter(std::vector<NaiveBuffer>& out, int pairCount);
    void gate(std::vector<NaiveBuffer>& out, int pairCount, float rms, std::uint64_t measured);
};

} // namespace orvanta::test
