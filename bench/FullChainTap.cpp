#include "bench/FullChainTap.h"

#include "core/engine/tapRenderCallback.h"

#include <utility>

namespace orvanta::bench {

FullChainTap::FullChainTap(const Kernels& kernels)
    : ref_{std::make_shared<TapState>(1, 2U, 3U, "uuid", 4U, firstCallbackLog_)} {
    constexpr std::size_t channels = 2;
    constexpr std::size_t longestBlock = 4096;
    TapState& state = *ref_.state;

    auto eq = std::make_unique<EQProcessor>(kRate, channels, kernels);
    eq->setAllGains(kGains);
    auto compressor = std::make_unique<CompressorProcessor>(kRate, channels, longestBlock, kernels);
    compressor->apply(compression());
    auto crossfeed = std::make_unique<CrossfeedProcessor>(kRate, kernels);
    crossfeed->setAmount(kCrossfeed);

    state.normalizer.replace(std::make_unique<NormalizationProcessor>(kRate, kernels));
    state.normalizationEnabled.store(true);
    state.volume.store(kVolume);
    state.eqProcessor.replace(std::move(eq));
    state.compressor.replace(std::move(compressor));
    state.limiter.replace(std::make_unique<LimiterProcessor>(kRate, channels, kernels));
    state.limiterEnabled.store(true);
    state.balance.store(kBalance);
    state.stereoWidth.store(kWidth);
    state.crossfeed.replace(std::move(crossfeed));
    state.noiseGateEnabled.store(true);
}

void FullChainTap::render(const AudioBufferList& input, AudioBufferList& output) {
    tapRenderCallback(&input, &output, &ref_);
}

} // namespace orvanta::bench
