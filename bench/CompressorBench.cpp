#include "bench/BlockBench.h"
#include "core/dsp/CompressorPreset.h"
#include "core/dsp/CompressorProcessor.h"
#include "tests/support/reference/ReferenceCompressor.h"

namespace orvanta::bench {
namespace {

constexpr std::size_t kLongestBlock = 4096;

Runner ourCompressor(const CompressorPreset& preset, const Kernels& kernels) {
    auto compressor = std::make_shared<CompressorProcessor>(kRate, 2, kLongestBlock, kernels);
    compressor->apply(preset);
    return channelRunner(std::move(compressor));
}

template <class Powers>
Runner plainCompressor(const CompressorPreset& preset) {
    auto compressor = std::make_shared<reference::Compressor<Powers>>(kRate, 2, kLongestBlock);
    compressor->apply(preset);
    return channelRunner(std::move(compressor));
}

const std::vector<Layout> kCompressorLayouts = {Layout::mono, Layout::planar, Layout::interleaved};

/// The presets themselves are there only when the program runs.
using PresetGetter = const CompressorPreset& (*)();

bool registerPreset(const std::string& name, PresetGetter preset) {
    using reference::ApproximatePowers;
    using reference::LibraryPowers;
    return registerVersions(
               name, kCompressorLayouts,
               [preset](const Kernels& kernels) { return ourCompressor(preset(), kernels); }) &&
           registerBlocks(name + "/reference", kCompressorLayouts,
                          [preset] { return plainCompressor<ApproximatePowers>(preset()); }) &&
           registerBlocks(name + "/referenceWithLibraryPowers", {Layout::planar},
                          [preset] { return plainCompressor<LibraryPowers>(preset()); });
}

const CompressorPreset& broadcast() {
    return CompressorPreset::broadcast;
}

const CompressorPreset& nightMode() {
    return CompressorPreset::nightMode;
}

[[maybe_unused]] const bool kCompressorIsRegistered =
    registerPreset("compressorBroadcast", broadcast) &&
    registerPreset("compressorNightMode", nightMode) &&
    registerDenormals("compressor", [] { return ourCompressor(broadcast(), kernels()); });

} // namespace
} // namespace orvanta::bench
