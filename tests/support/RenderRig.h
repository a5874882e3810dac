#pragma once

#include "core/engine/tapRenderCallback.h"
#include "tests/support/Buffers.h"
#include "tests/support/RecordingLog.h"

#include <memory>

namespace orvanta::test {

/// One tap without an audio system: calls its render callback on buffers of the test's own.
class RenderRig {
public:
    static constexpr std::int32_t pid = 4711;
    static constexpr double rate = 48000.0;

    OSStatus render(Buffers& input, Buffers& output);

    /// One callback of one mono buffer a side; answers the output.
    std::vector<float> render(const std::vector<float>& samples);

    [[nodiscard]] TapState& state() { return *ref_.state; }

    [[nodiscard]] AudioCallbackRef& ref() { return ref_; }

    /// All of them for 48 kHz and two channels, neutral or switched off.
    void makeEveryProcessor() {
        state().normalizer.replace(std::make_unique<NormalizationProcessor>(rate));
        state().eqProcessor.replace(std::make_unique<EQProcessor>(rate, 2));
        state().compressor.replace(std::make_unique<CompressorProcessor>(rate, 2, 4096));
        state().limiter.replace(std::make_unique<LimiterProcessor>(rate, 2));
        state().crossfeed.replace(std::make_unique<CrossfeedProcessor>(rate));
    }

    void enableLimiter() {
        state().limiter.replace(std::make_unique<LimiterProcessor>(rate, 2));
        state().limiterEnabled.store(true);
    }

    /// Log texts, the callback's own record included.
    [[nodiscard]] std::vector<std::string> logTexts();

private:
    RecordingLog log_;
    Logger logger_{log_, "tapManager"};
    FirstCallbackLog firstCallbackLog_{logger_};
    AudioCallbackRef ref_{std::make_shared<TapState>(pid, 2U, 3U, "uuid", 4U, firstCallbackLog_)};
};

} // namespace orvanta::test
