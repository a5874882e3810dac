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

    OSStatus render(Buffers& input, Buffers& output);

    /// One callback of one mono buffer a side; answers the output.
    std::vector<float> render(const std::vector<float>& samples);

    [[nodiscard]] TapState& state() { return *ref_.state; }

    [[nodiscard]] AudioCallbackRef& ref() { return ref_; }

    void enableLimiter() {
        state().limiter.replace(std::make_unique<LimiterProcessor>(48000.0, 2));
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
