#include "bench/compare/Peers.h"
#include "bench/compare/Settings.h"

namespace orvanta::compare {
namespace {

std::unique_ptr<Lv2Contender> lspLimiter(Lv2World& world, std::size_t maxFrames, double ceilingDB) {
    auto limiter =
        std::make_unique<Lv2Contender>(world, "http://lsp-plug.in/plugins/lv2/limiter_stereo",
                                       AudioPorts{"in_l", "in_r", "out_l", "out_r"}, maxFrames);
    Lv2Plugin& plugin = limiter->plugin();
    plugin.set("alr", 0);
    plugin.set("boost", 0);
    plugin.set("slink", 0);
    plugin.choose("ovs", "None");
    plugin.choose("dith", "None");
    plugin.choose("mode", "Herm Thin");
    plugin.set("th", ratioOf(ceilingDB));
    plugin.set("lk", kLimiterLookAheadMs);
    plugin.set("at", kLimiterLookAheadMs);
    plugin.set("rt", 20); // the longest it has
    plugin.set("pause", 1);
    for (const char* const graph : {"igv", "ogv", "scgv", "grgv"}) {
        plugin.set(std::string(graph) + "_l", 0);
        plugin.set(std::string(graph) + "_r", 0);
    }
    limiter->start();
    return limiter;
}

std::unique_ptr<Lv2Contender> calfLimiter(Lv2World& world, std::size_t maxFrames,
                                          double ceilingDB) {
    auto limiter =
        std::make_unique<Lv2Contender>(world, "http://calf.sourceforge.net/plugins/Limiter",
                                       AudioPorts{"in_l", "in_r", "out_l", "out_r"}, maxFrames);
    Lv2Plugin& plugin = limiter->plugin();
    plugin.set("limit", ratioOf(ceilingDB));
    plugin.set("attack", kLimiterLookAheadMs);
    plugin.set("release", kLimiterReleaseMs);
    plugin.set("asc", 0);
    plugin.set("oversampling", 1);
    plugin.set("auto_level", 0);
    limiter->start();
    return limiter;
}

std::unique_ptr<Lv2Contender> x42Limiter(Lv2World& world, std::size_t maxFrames, double ceilingDB) {
    auto limiter =
        std::make_unique<Lv2Contender>(world, "http://gareus.org/oss/lv2/dpl#stereo",
                                       AudioPorts{"inL", "inR", "outL", "outR"}, maxFrames);
    Lv2Plugin& plugin = limiter->plugin();
    plugin.set("gain", 0);
    plugin.set("threshold", ceilingDB);
    plugin.set("release", kLimiterReleaseMs / 1000);
    plugin.set("truepeak", 0);
    limiter->start();
    return limiter;
}

} // namespace

std::vector<Lv2Peer> limiters(double ceilingDB) {
    const auto at = [ceilingDB](auto make) {
        return [make, ceilingDB](Lv2World& world, std::size_t maxFrames) {
            return make(world, maxFrames, ceilingDB);
        };
    };
    return {{"LSP Limiter", at(lspLimiter)},
            {"Calf Limiter", at(calfLimiter)},
            {"x42 dpl", at(x42Limiter)}};
}

} // namespace orvanta::compare
