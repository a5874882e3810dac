// Cost of one callback. Judge by ratios within one run: memcpy of the same buffers is the peer.

#include "core/engine/tapRenderCallback.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <random>
#include <vector>

namespace orvanta {
namespace {

class SilentLog final : public SystemLog {
public:
    void write(const LogRecord& /*record*/) override {}
};

/// Planar stereo on both sides, filled with noise.
class Cycle {
public:
    explicit Cycle(std::size_t frames) {
        std::mt19937 random(1);
        std::uniform_real_distribution<float> amplitude(-0.5F, 0.5F);
        for (int channel = 0; channel < 2; ++channel) {
            auto& in = input_.emplace_back(frames);
            for (float& sample : in)
                sample = amplitude(random);
            auto& out = output_.emplace_back(frames);
            const auto bytes = static_cast<std::uint32_t>(frames * sizeof(float));
            inBuffers_.push_back({1, bytes, in.data()});
            outBuffers_.push_back({1, bytes, out.data()});
        }
    }

    void render(const AudioCallbackRef& ref) {
        const AudioBufferList in{inBuffers_};
        AudioBufferList out{outBuffers_};
        tapRenderCallback(&in, &out, &ref);
        benchmark::ClobberMemory();
    }

    void copy() {
        for (std::size_t channel = 0; channel < 2; ++channel)
            std::memcpy(outBuffers_[channel].mData, inBuffers_[channel].mData,
                        inBuffers_[channel].mDataByteSize);
        benchmark::ClobberMemory();
    }

private:
    std::vector<std::vector<float>> input_;
    std::vector<std::vector<float>> output_;
    std::vector<AudioBuffer> inBuffers_;
    std::vector<AudioBuffer> outBuffers_;
};

class Tap {
public:
    TapState& state() { return *ref_.state; }

    const AudioCallbackRef& ref() { return ref_; }

private:
    SilentLog log_;
    Logger logger_{log_, "bench"};
    FirstCallbackLog firstCallbackLog_{logger_};
    AudioCallbackRef ref_{std::make_shared<TapState>(1, 2U, 3U, "uuid", 4U, firstCallbackLog_)};
};

void runCallbacks(benchmark::State& state, Tap& tap) {
    Cycle cycle(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        cycle.render(tap.ref());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void memcpyOfTheSameBuffers(benchmark::State& state) {
    Cycle cycle(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        cycle.copy();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void callbackWithNothingActive(benchmark::State& state) {
    Tap tap;
    runCallbacks(state, tap);
}

void callbackWithVolume(benchmark::State& state) {
    Tap tap;
    tap.state().volume.store(0.5F);
    runCallbacks(state, tap);
}

void callbackWithVolumeBalanceLimiterAndGate(benchmark::State& state) {
    Tap tap;
    tap.state().volume.store(1.5F);
    tap.state().balance.store(0.3F);
    tap.state().noiseGateEnabled.store(true);
    tap.state().limiter.replace(std::make_unique<LimiterProcessor>(48000.0, 2));
    tap.state().limiterEnabled.store(true);
    runCallbacks(state, tap);
}

BENCHMARK(memcpyOfTheSameBuffers)->Arg(64)->Arg(256)->Arg(1024);
BENCHMARK(callbackWithNothingActive)->Arg(64)->Arg(256)->Arg(1024);
BENCHMARK(callbackWithVolume)->Arg(64)->Arg(256)->Arg(1024);
BENCHMARK(callbackWithVolumeBalanceLimiterAndGate)->Arg(64)->Arg(256)->Arg(1024);

} // namespace
} // namespace orvanta
