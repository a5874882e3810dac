#include "bench/BlockBench.h"

#include "core/dsp/FlushDenormals.h"

#include <algorithm>
#include <random>

namespace orvanta::bench {
namespace {

constexpr std::size_t kNoiseSamples = 1U << 16U;
constexpr float kOrdinary = 0.7F;

const char* nameOf(Layout layout) {
    switch (layout) {
    case Layout::mono:
        return "mono";
    case Layout::planar:
        return "planar";
    case Layout::interleaved:
        break;
    }
    return "interleaved";
}

void countFrames(benchmark::State& state, std::size_t frames) {
    state.counters["perFrame"] = benchmark::Counter(static_cast<double>(frames),
                                                    benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}

void runBlocks(benchmark::State& state, Layout layout, const RunnerFactory& make) {
    const FlushDenormals flush;
    const Runner run = make();
    Noise noise(kOrdinary);
    Block block(layout, static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        noise.fill(block);
        run(block);
        benchmark::ClobberMemory();
    }
    countFrames(state, block.frames);
}

void runAMinute(benchmark::State& state, const RunnerFactory& make, std::size_t frames,
                float amplitude) {
    constexpr int burstBlocks = 200;
    const FlushDenormals flush;
    const Runner run = make();
    Block block(Layout::planar, frames);
    Noise burst(1.0F);
    for (int k = 0; k < burstBlocks; ++k) {
        burst.fill(block);
        run(block);
    }
    Noise rest(amplitude);
    for (auto _ : state) {
        rest.fill(block);
        run(block);
        benchmark::ClobberMemory();
    }
    countFrames(state, frames);
}

using Body = std::function<void(benchmark::State&)>;

class BodyBenchmark final : public benchmark::Fixture {
public:
    BodyBenchmark(const std::string& name, Body body) : body_(std::move(body)) {
        SetName(name.c_str());
    }

protected:
    void BenchmarkCase(benchmark::State& state) override { body_(state); }

private:
    Body body_;
};

benchmark::internal::Benchmark* registerBody(const std::string& name, Body body) {
    return benchmark::internal::RegisterBenchmarkInternal(
        new BodyBenchmark(name, std::move(body))); // NOLINT(clang-analyzer-*): the library keeps it
}

} // namespace

Block::Block(Layout layoutOfIt, std::size_t frameCount)
    : layout(layoutOfIt),
      frames(frameCount),
      left(layout == Layout::interleaved ? 2 * frames : frames),
      right(layout == Layout::planar ? frames : 0) {}

Noise::Noise(float amplitude) : samples_(kNoiseSamples) {
    constexpr std::size_t samplesPerLevel = 2400;
    std::mt19937 random(1);
    std::uniform_real_distribution<float> value(-amplitude, amplitude);
    for (std::size_t k = 0; k < samples_.size(); ++k)
        samples_[k] = value(random) * (k / samplesPerLevel % 2 == 0 ? 1.0F : 0.2F);
}

void Noise::fill(Block& block) {
    fill(block.left);
    fill(block.right);
}

void Noise::fill(std::vector<float>& buffer) {
    if (position_ + buffer.size() > samples_.size())
        position_ = 0;
    std::copy_n(samples_.data() + position_, buffer.size(), buffer.data());
    position_ += buffer.size();
}

bool registerBlocks(const std::string& name, const std::vector<Layout>& layouts,
                    const RunnerFactory& make) {
    for (const Layout layout : layouts)
        registerBody(name + "/" + nameOf(layout),
                     [layout, make](benchmark::State& state) { runBlocks(state, layout, make); })
            ->Arg(64)
            ->Arg(256)
            ->Arg(1024);
    return true;
}

bool registerVersions(const std::string& processor, const std::vector<Layout>& layouts,
                      const std::function<Runner(const Kernels&)>& make) {
    const auto registerOne = [&](InstructionSet set, const char* name) {
        if (const Kernels* const kernels = kernelsFor(set))
            registerBlocks(processor + "/" + name, layouts,
                           [make, kernels] { return make(*kernels); });
    };
    registerOne(InstructionSet::avx2, "avx2");
    registerOne(InstructionSet::baseline, "baseline");
    return true;
}

bool registerDenormals(const std::string& processor, const RunnerFactory& make) {
    constexpr std::size_t frames = 256;
    constexpr auto blocksOfAMinute = static_cast<benchmark::IterationCount>(60 * kRate / frames);
    const auto registerOne = [&](const char* name, float amplitude) {
        registerBody("denormals/" + processor + "/" + name, [make,
                                                             amplitude](benchmark::State& state) {
            runAMinute(state, make, frames, amplitude);
        })->Iterations(blocksOfAMinute);
    };
    registerOne("noise", kOrdinary);
    registerOne("silence", 0.0F);
    registerOne("subnormal", 1e-39F);
    return true;
}

} // namespace orvanta::bench
