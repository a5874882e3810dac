// The whole chain of one tap through the render callback, every stage at work.

#include "bench/BlockBench.h"
#include "bench/FullChainTap.h"
#include "tests/support/reference/Equaliser.h"
#include "tests/support/reference/Levels.h"
#include "tests/support/reference/Limiter.h"
#include "tests/support/reference/Normalization.h"
#include "tests/support/reference/ReferenceCompressor.h"
#include "tests/support/reference/Stereo.h"

#include <array>
#include <span>

namespace orvanta::bench {
namespace {

/// The callback's buffers over the memory of a block, which it renders in place of a processor.
class ChainRunner {
public:
    explicit ChainRunner(const Kernels& kernels) : tap_(std::make_shared<FullChainTap>(kernels)) {}

    void operator()(Block& block) {
        if (output_ == nullptr)
            output_ = std::make_shared<Block>(block.layout, block.frames);
        Buffers input = buffersOf(block);
        Buffers output = buffersOf(*output_);
        const std::size_t count = block.layout == Layout::planar ? 2 : 1;
        AudioBufferList outputs{std::span(output).first(count)};
        tap_->render(AudioBufferList{std::span(input).first(count)}, outputs);
    }

private:
    using Buffers = std::array<AudioBuffer, 2>;

    static Buffers buffersOf(Block& block) {
        const auto bytes = [](const std::vector<float>& samples) {
            return static_cast<std::uint32_t>(samples.size() * sizeof(float));
        };
        const std::uint32_t channels = block.layout == Layout::interleaved ? 2 : 1;
        return {{{channels, bytes(block.left), block.left.data()},
                 {1U, bytes(block.right), block.right.data()}}};
    }

    std::shared_ptr<FullChainTap> tap_;
    std::shared_ptr<Block> output_;
};

/// The same stages one after the other, plainly. Planar.
class PlainChain {
public:
    PlainChain() {
        for (std::size_t band = 0; band < FullChainTap::kGains.size(); ++band)
            eq_.setGain(band, FullChainTap::kGains[band]);
        compressor_.apply(FullChainTap::compression());
        crossfeed_.amount = FullChainTap::kCrossfeed;
    }

    void operator()(Block& block) {
        processChannels(normalization_, block);
        scale(block.left, FullChainTap::kVolume);
        scale(block.right, FullChainTap::kVolume);
        processChannels(eq_, block);
        processChannels(compressor_, block);
        processChannels(limiter_, block);
        scale(block.left, 1.0F - FullChainTap::kBalance);
        reference::widen(block.left, block.right, FullChainTap::kWidth);
        crossfeed_.process(block.left, block.right);
        benchmark::DoNotOptimize(reference::rms(block.left));
        benchmark::DoNotOptimize(reference::peak(block.left));
    }

private:
    static void scale(std::vector<float>& samples, float gain) {
        for (float& sample : samples)
            sample *= gain;
    }

    reference::Normalization normalization_{kRate};
    reference::Equaliser eq_{kRate, 2};
    reference::Compressor<reference::ApproximatePowers> compressor_{kRate, 2, 4096};
    reference::Limiter limiter_{kRate, 2};
    reference::Crossfeed crossfeed_{kRate};
};

Runner plainChain() {
    return [chain = std::make_shared<PlainChain>()](Block& block) {
        (*chain)(block);
    };
}

const std::vector<Layout> kChainLayouts = {Layout::mono, Layout::planar, Layout::interleaved};

[[maybe_unused]] const bool kChainIsRegistered =
    registerVersions("chain", kChainLayouts,
                     [](const Kernels& kernels) { return Runner(ChainRunner(kernels)); }) &&
    registerBlocks("chain/reference", {Layout::planar}, plainChain) &&
    registerDenormals("chain", [] { return Runner(ChainRunner(kernels())); });

} // namespace
} // namespace orvanta::bench
