#pragma once

#include "bench/compare/Lv2Contender.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Other people's processors, set to the work of Settings.h: what they draw and analyse is off, and
/// so is what ours does not do (oversampling, automatic release, make-up levels).
namespace orvanta::compare {

using Lv2Factory =
    std::function<std::unique_ptr<Lv2Contender>(Lv2World& world, std::size_t maxFrames)>;

struct Lv2Peer {
    std::string name;
    Lv2Factory make;
};

/// Ten bands each.
[[nodiscard]] std::vector<Lv2Peer> tenBandEQs();
/// Those that have no more than six.
[[nodiscard]] std::vector<Lv2Peer> sixBandEQs();
/// Three bands each.
[[nodiscard]] std::vector<Lv2Peer> multibandCompressors();
/// At a ceiling in dB.
[[nodiscard]] std::vector<Lv2Peer> limiters(double ceilingDB);

/// libbs2b, on the interleaved blocks that it works on.
[[nodiscard]] std::unique_ptr<Contender> bs2bCrossfeed();
/// libebur128's momentary loudness of the left channel, read every 400 ms.
[[nodiscard]] std::unique_ptr<Contender> ebur128Meter();

/// One of each, one after the other without a copy between the plug-ins, then the meter, then the
/// crossfeed, whose layout costs one interleaving. The result stays interleaved.
[[nodiscard]] std::unique_ptr<Contender> peersChain(Lv2World& world, const Lv2Factory& eq,
                                                    const Lv2Factory& compressor,
                                                    const Lv2Factory& limiter,
                                                    std::size_t maxFrames);

} // namespace orvanta::compare
