// Width and crossfeed, which take both channels together.

#include "bench/BlockBench.h"
#include "core/dsp/CrossfeedProcessor.h"
#include "core/dsp/StereoWidener.h"
#include "tests/support/reference/Stereo.h"

namespace orvanta::bench {
namespace {

constexpr float kAmount = 0.5F;
constexpr float kWidth = 1.5F;

Runner ourCrossfeed(const Kernels& kernels) {
    auto crossfeed = std::make_shared<CrossfeedProcessor>(kRate, kernels);
    crossfeed->setAmount(kAmount);
    return [crossfeed](Block& block) {
        if (block.layout == Layout::planar)
            crossfeed->processPlanar(block.left.data(), block.right.data(), block.frames);
        else
            crossfeed->processInterleaved(block.left.data(), block.frames);
    };
}

Runner plainCrossfeed() {
    auto crossfeed = std::make_shared<reference::Crossfeed>(kRate);
    crossfeed->amount = kAmount;
    return [crossfeed](Block& block) {
        crossfeed->process(block.left, block.right);
    };
}

Runner ourWidth(const Kernels& kernels) {
    return [&kernels](Block& block) {
        if (block.layout == Layout::planar)
            StereoWidener::processPlanar(block.left.data(), block.right.data(), block.frames,
                                         kWidth, kernels);
        else
            StereoWidener::process(block.left.data(), block.frames, kWidth, kernels);
    };
}

Runner plainWidth() {
    return [](Block& block) {
        reference::widen(block.left, block.right, kWidth);
    };
}

const std::vector<Layout> kStereoLayouts = {Layout::planar, Layout::interleaved};

[[maybe_unused]] const bool kStereoIsRegistered =
    registerVersions("crossfeed", kStereoLayouts, ourCrossfeed) &&
    registerBlocks("crossfeed/reference", {Layout::planar}, plainCrossfeed) &&
    registerDenormals("crossfeed", [] { return ourCrossfeed(kernels()); }) &&
    registerVersions("width", kStereoLayouts, ourWidth) &&
    registerBlocks("width/reference", {Layout::planar}, plainWidth);

} // namespace
} // namespace orvanta::bench
