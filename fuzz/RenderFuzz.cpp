// Drives one tap's render callback with arbitrary settings, buffer shapes and samples. Whatever
// comes, it must stay within its buffers, and its meters must stay numbers.

#include "core/engine/tapRenderCallback.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace orvanta {
namespace {

class SilentLog final : public SystemLog {
public:
    void write(const LogRecord& /*record*/) override {}
};

/// Takes values off the front of the input; zeros once it is used up.
class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    [[nodiscard]] bool isEmpty() const { return size_ == 0; }

    template <class Value>
    Value take() {
        Value value{};
        const std::size_t count = size_ < sizeof value ? size_ : sizeof value;
        std::memcpy(&value, data_, count);
        data_ += count;
        size_ -= count;
        return value;
    }

private:
    const std::uint8_t* data_;
    std::size_t size_;
};

/// Up to three buffers of exactly the memory they claim.
class Side {
public:
    explicit Side(Bytes& bytes) {
        const std::size_t count = bytes.take<std::uint8_t>() % 4U;
        storage_.reserve(count);
        for (std::size_t index = 0; index < count; ++index)
            add(bytes);
    }

    AudioBufferList list() { return AudioBufferList{buffers_}; }

private:
    void add(Bytes& bytes) {
        const std::uint32_t channels = bytes.take<std::uint8_t>() % 4U;
        const std::uint32_t size = bytes.take<std::uint16_t>() % 1024U;
        const bool isNull = bytes.take<std::uint8_t>() % 8U == 0;
        // Rounded up to floats, so that the memory is aligned; never more than one byte count too
        // long.
        auto& samples = storage_.emplace_back((size + 3U) / 4U, bytes.take<float>());
        if (!samples.empty())
            samples.front() = bytes.take<float>();
        buffers_.push_back({channels, size, isNull ? nullptr : samples.data()});
    }

    std::vector<std::vector<float>> storage_;
    std::vector<AudioBuffer> buffers_;
};

void changeSettings(TapState& state, Bytes& bytes) {
    const auto flags = bytes.take<std::uint8_t>();
    state.isMuted.store((flags & 1U) != 0);
    state.limiterEnabled.store((flags & 2U) != 0);
    state.noiseGateEnabled.store((flags & 4U) != 0);
    if ((flags & 8U) != 0)
        state.volume.store(bytes.take<float>());
    if ((flags & 16U) != 0)
        state.balance.store(bytes.take<float>());
    if ((flags & 32U) != 0)
        state.noiseGateThresholdLinear.store(bytes.take<float>());
    if ((flags & 64U) != 0)
        state.limiter.get()->setCeiling(bytes.take<float>());
    if ((flags & 128U) != 0)
        state.limiter.get()->reset();
}

void expectNumber(float value) {
    if (!std::isfinite(value))
        std::abort();
}

void run(Bytes bytes) {
    static SilentLog log;
    static const Logger logger(log, "fuzz");
    static FirstCallbackLog firstCallbackLog(logger);
    const AudioCallbackRef ref{std::make_shared<TapState>(1, 2U, 3U, "uuid", 4U, firstCallbackLog)};
    ref.state->limiter.replace(std::make_unique<LimiterProcessor>(48000.0, 2));
    while (!bytes.isEmpty()) {
        changeSettings(*ref.state, bytes);
        Side in(bytes);
        Side out(bytes);
        const AudioBufferList input = in.list();
        AudioBufferList output = out.list();
        tapRenderCallback(&input, &output, &ref);
        expectNumber(ref.state->peakLevel.load());
        expectNumber(ref.state->rmsLevel.load());
        expectNumber(ref.state->gateFadeGain.load());
    }
}

} // namespace
} // namespace orvanta

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvanta::run(orvanta::Bytes(data, size));
    return 0;
}
