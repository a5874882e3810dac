// Drives one tap's render callback, every processor in it, with arbitrary operations, buffer shapes
// and samples. Whatever comes, it must stay within its buffers, and what it publishes must stay
// numbers.

#include "core/engine/tapRenderCallback.h"

#include <array>
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
        const auto kind = bytes.take<std::uint16_t>();
        const auto nullness = bytes.take<std::uint8_t>();
        const bool isNull = nullness % 8U == 0;
        // Few are longer than what the processors take at once.
        const std::uint32_t size = kind % 1024U * (nullness >= 250U ? 40U : 1U);
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
    state.normalizationEnabled.store((flags & 8U) != 0);
    if ((flags & 16U) != 0)
        state.volume.store(bytes.take<float>());
    if ((flags & 32U) != 0)
        state.balance.store(bytes.take<float>());
    if ((flags & 64U) != 0)
        state.noiseGateThresholdLinear.store(bytes.take<float>());
    if ((flags & 128U) != 0)
        state.stereoWidth.store(bytes.take<float>());
}

/// A look-ahead that is no time stops the process by design, so there is none here.
CompressorBandSettings bandSettings(Bytes& bytes) {
    CompressorBandSettings band;
    band.threshold = bytes.take<float>();
    band.ratio = bytes.take<float>();
    band.attackMs = bytes.take<float>();
    band.releaseMs = bytes.take<float>();
    band.makeupGain = bytes.take<float>();
    const auto modes = bytes.take<std::uint8_t>();
    band.lookaheadMs = 0.1F * static_cast<float>(modes);
    band.detectionMode = (modes & 1U) != 0 ? DetectionMode::rms : DetectionMode::peak;
    band.autoMakeup = (modes & 2U) != 0;
    return band;
}

double usualRate(std::uint8_t choice) {
    constexpr std::array<double, 8> rates{0.0,     8000.0,  32000.0, 44100.0,
                                          48000.0, 88200.0, 96000.0, 192000.0};
    return rates[choice % rates.size()];
}

void operateEQ(EQProcessor& equaliser, Bytes& bytes) {
    switch (bytes.take<std::uint8_t>() % 4U) {
    case 0:
        equaliser.setGain(bytes.take<std::int8_t>(), bytes.take<float>());
        break;
    case 1: {
        const std::array<float, 3> gains{bytes.take<float>(), bytes.take<float>(),
                                         bytes.take<float>()};
        equaliser.setAllGains(gains);
        break;
    }
    case 2:
        equaliser.updateSampleRate(usualRate(bytes.take<std::uint8_t>()));
        break;
    default:
        equaliser.reset();
    }
}

void operateCompressor(CompressorProcessor& compressor, Bytes& bytes) {
    switch (bytes.take<std::uint8_t>() % 3U) {
    case 0:
        compressor.setBand(bytes.take<std::int8_t>(), bandSettings(bytes));
        break;
    case 1: {
        const auto& presets = CompressorPreset::allPresets();
        compressor.apply(presets[bytes.take<std::uint8_t>() % presets.size()].preset);
        break;
    }
    default:
        compressor.updateSampleRate(usualRate(bytes.take<std::uint8_t>()));
    }
}

void operateProcessor(TapState& state, Bytes& bytes) {
    switch (bytes.take<std::uint8_t>() % 8U) {
    case 0:
        operateEQ(*state.eqProcessor.get(), bytes);
        break;
    case 1:
        operateCompressor(*state.compressor.get(), bytes);
        break;
    case 2:
        state.limiter.get()->setCeiling(bytes.take<float>());
        break;
    case 3:
        state.limiter.get()->reset();
        break;
    case 4:
        state.normalizer.get()->reset();
        break;
    case 5:
        state.normalizer.get()->setTargetLUFS(bytes.take<float>());
        state.normalizer.get()->setMaxCorrectionDB(bytes.take<float>());
        break;
    case 6:
        state.crossfeed.get()->setAmount(bytes.take<float>());
        break;
    default:
        state.crossfeed.get()->reset();
    }
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
    TapState& state = *ref.state;
    state.eqProcessor.replace(std::make_unique<EQProcessor>(48000.0, 2));
    state.compressor.replace(std::make_unique<CompressorProcessor>(48000.0, 2, 4096));
    state.limiter.replace(std::make_unique<LimiterProcessor>(48000.0, 2));
    state.normalizer.replace(std::make_unique<NormalizationProcessor>(48000.0));
    state.crossfeed.replace(std::make_unique<CrossfeedProcessor>(48000.0));
    while (!bytes.isEmpty()) {
        changeSettings(state, bytes);
        for (auto operations = bytes.take<std::uint8_t>() % 4U; operations > 0; --operations)
            operateProcessor(state, bytes);
        Side in(bytes);
        Side out(bytes);
        const AudioBufferList input = in.list();
        AudioBufferList output = out.list();
        tapRenderCallback(&input, &output, &ref);
        expectNumber(state.peakLevel.load());
        expectNumber(state.rmsLevel.load());
        expectNumber(state.gateFadeGain.load());
        expectNumber(state.limiter.get()->gainReductionDB());
        expectNumber(state.normalizer.get()->currentGainDB());
        for (const float reduction : state.compressor.get()->gainReduction())
            expectNumber(reduction);
    }
}

} // namespace
} // namespace orvanta

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvanta::run(orvanta::Bytes(data, size));
    return 0;
}
