#include "bench/BlockBench.h"
#include "core/dsp/NormalizationProcessor.h"
#include "tests/support/reference/Normalization.h"

namespace orvanta::bench {
namespace {

Runner ourNormalization(const Kernels& kernels) {
    return channelRunner(std::make_shared<NormalizationProcessor>(kRate, kernels));
}

Runner plainNormalization() {
    return channelRunner(std::make_shared<reference::Normalization>(kRate));
}

const std::vector<Layout> kNormalizationLayouts = {Layout::mono, Layout::planar,
                                                   Layout::interleaved};

[[maybe_unused]] const bool kNormalizationIsRegistered =
    registerVersions("normalization", kNormalizationLayouts, ourNormalization) &&
    registerBlocks("normalization/reference", kNormalizationLayouts, plainNormalization) &&
    registerDenormals("normalization", [] { return ourNormalization(kernels()); });

} // namespace
} // namespace orvanta::bench
