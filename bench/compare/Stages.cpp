#include "bench/compare/Stages.h"

#include "bench/compare/OurProcessors.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

namespace orvanta::compare {
namespace {

/// Limiters differ in how they treat a peak's first samples.
constexpr double kLimiterToleranceDB = 0.5;
/// What stands behind the limiter in a chain may add to its peaks.
constexpr double kChainToleranceDB = 6.0;
/// Of the engine's limiter, which nothing moves.
constexpr double kChainCeilingDB = 0.0;

Stage stageOf(std::string title, const std::vector<OurContender>& ours, const Check& check) {
    Stage stage{std::move(title), {}};
    for (const OurContender& each : ours)
        stage.entries.push_back({each.name, true, each.make, check});
    return stage;
}

Stage stageOf(Lv2World& world, std::string title, const std::vector<OurContender>& ours,
              const std::vector<Lv2Peer>& peers, const Check& check) {
    Stage stage = stageOf(std::move(title), ours, check);
    for (const Lv2Peer& each : peers)
        stage.entries.push_back(
            {each.name, false,
             [&world, make = each.make](std::size_t maxFrames) { return make(world, maxFrames); },
             check});
    return stage;
}

Lv2Factory named(const std::string& name, const std::vector<Lv2Peer>& peers) {
    const auto found = std::find_if(peers.begin(), peers.end(),
                                    [&name](const Lv2Peer& each) { return each.name == name; });
    if (found == peers.end())
        throw std::invalid_argument("no such peer: " + name);
    return found->make;
}

} // namespace

Stage tenBandEQStage(Lv2World& world) {
    return stageOf(world, "Equaliser, 10 bands", ourEQs(kTenBands), tenBandEQs(),
                   equalises(kTenBands));
}

Stage sixBandEQStage(Lv2World& world) {
    return stageOf(world, "Equaliser, 6 bands", ourEQs(kSixBands), sixBandEQs(),
                   equalises(kSixBands));
}

Stage compressorStage(Lv2World& world) {
    return stageOf(world, "Multiband compressor, 3 bands", ourCompressors(), multibandCompressors(),
                   compresses());
}

Stage limiterStage(Lv2World& world) {
    return stageOf(world, "Limiter", ourLimiters(kCeilingDB), limiters(kCeilingDB),
                   limits(kCeilingDB, kLimiterToleranceDB));
}

Stage crossfeedStage() {
    Stage stage = stageOf("Crossfeed", ourCrossfeeds(), crossfeeds());
    stage.entries.push_back({"libbs2b", false,
                             [](std::size_t /*maxFrames*/) { return bs2bCrossfeed(); },
                             crossfeeds()});
    return stage;
}

Stage loudnessStage() {
    Stage stage = stageOf("Loudness of one channel", ourNormalizations(), metersLoudness());
    stage.entries.push_back({"libebur128, momentary", false,
                             [](std::size_t /*maxFrames*/) { return ebur128Meter(); },
                             metersLoudness()});
    return stage;
}

Stage chainStage(Lv2World& world, const std::string& eq, const std::string& limiter) {
    const Check limiting = limits(kChainCeilingDB, kChainToleranceDB);
    // Against quiet tones the gate of ours closes, so it is asked what it does instead.
    Stage stage =
        stageOf("Whole chain", ourChains(), all({everyStageIsAtWork(), limiting, crossfeeds()}));
    for (const Lv2Peer& compressor : multibandCompressors())
        stage.entries.push_back(
            {fmt::format("{} + {} + {} + libebur128 + libbs2b", eq, compressor.name, limiter),
             false,
             [&world, makeEQ = named(eq, tenBandEQs()), makeCompressor = compressor.make,
              makeLimiter = named(limiter, limiters(kChainCeilingDB))](std::size_t maxFrames) {
                 return peersChain(world, makeEQ, makeCompressor, makeLimiter, maxFrames);
             },
             all({compresses(), limiting, crossfeeds()})});
    return stage;
}

} // namespace orvanta::compare
