#include "bench/BlockBench.h"
#include "core/dsp/LimiterProcessor.h"
#include "tests/support/reference/Limiter.h"

namespace orvanta::bench {
namespace {

constexpr float kCeilingDB = -6.0F;

template <class Limiter, class... Arguments>
Runner limiter(const Arguments&... arguments) {
    auto made = std::make_shared<Limiter>(kRate, 2, arguments...);
    made->setCeiling(kCeilingDB);
    return channelRunner(std::move(made));
}

Runner ourLimiter(const Kernels& kernels) {
    return limiter<LimiterProcessor>(kernels);
}

const std::vector<Layout> kLimiterLayouts = {Layout::mono, Layout::planar, Layout::interleaved};

[[maybe_unused]] const bool kLimiterIsRegistered =
    registerVersions("limiter", kLimiterLayouts, ourLimiter) &&
    registerBlocks("limiter/reference", kLimiterLayouts,
                   [] { return limiter<reference::Limiter>(); }) &&
    registerDenormals("limiter", [] { return ourLimiter(kernels()); });

} // namespace
} // namespace orvanta::bench
