#pragma once

#include "core/dsp/CompressorPreset.h"
#include "core/dsp/EQBand.h"
#include "core/dsp/kernels/Kernels.h"
#include "core/engine/FirstCallbackLog.h"
#include "core/engine/TapState.h"
#include "core/platform/AudioBufferList.h"
#include "core/platform/Logger.h"
#include "core/platform/SystemLog.h"

#include <array>
#include <memory>

namespace orvanta::bench {

/// A tap on which every stage of the render callback is at work.
class FullChainTap {
public:
    static constexpr double kRate = 48000.0;
    /// dB; no band rests.
    static constexpr std::array<float, kEQBandCount> kGains = {5, -4, 6, -5, 4, -6, 5, -4, 6, -5};
    static constexpr float kVolume = 1.4F;
    static constexpr float kBalance = 0.3F;
    static constexpr float kWidth = 1.5F;
    static constexpr float kCrossfeed = 0.5F;

    static const CompressorPreset& compression() { return CompressorPreset::broadcast; }

    explicit FullChainTap(const Kernels& kernels = orvanta::kernels());

    void render(const AudioBufferList& input, AudioBufferList& output);

    [[nodiscard]] const TapState& state() const { return *ref_.state; }

private:
    class SilentLog final : public SystemLog {
    public:
        void write(const LogRecord& /*record*/) override {}
    };

    SilentLog log_;
    Logger logger_{log_, "bench"};
    FirstCallbackLog firstCallbackLog_{logger_};
    AudioCallbackRef ref_;
};

} // namespace orvanta::bench
