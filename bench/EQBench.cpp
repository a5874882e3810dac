#include "bench/BlockBench.h"
#include "core/dsp/EQProcessor.h"
#include "tests/support/reference/Equaliser.h"

namespace orvanta::bench {
namespace {

/// Every band at work.
template <class Equaliser, class Band>
Runner equaliser(std::shared_ptr<Equaliser> eq) {
    constexpr float gains[] = {5, -4, 6, -5, 4, -6, 5, -4, 6, -5};
    Band band = 0;
    for (const float gain : gains)
        eq->setGain(band++, gain);
    return channelRunner(std::move(eq));
}

Runner ourEqualiser(const Kernels& kernels) {
    return equaliser<EQProcessor, int>(std::make_shared<EQProcessor>(kRate, 2, kernels));
}

Runner plainEqualiser() {
    return equaliser<reference::Equaliser, std::size_t>(
        std::make_shared<reference::Equaliser>(kRate, 2));
}

const std::vector<Layout> kEQLayouts = {Layout::mono, Layout::planar, Layout::interleaved};

[[maybe_unused]] const bool kEQIsRegistered =
    registerVersions("equaliser", kEQLayouts, ourEqualiser) &&
    registerBlocks("equaliser/reference", kEQLayouts, plainEqualiser) &&
    registerDenormals("equaliser", [] { return ourEqualiser(kernels()); });

} // namespace
} // namespace orvanta::bench
