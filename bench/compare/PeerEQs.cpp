#include "bench/compare/Peers.h"
#include "bench/compare/Settings.h"

#include <fmt/format.h>

namespace orvanta::compare {
namespace {

using Shape = EQBandSetting::Shape;

std::unique_ptr<Lv2Contender> lspEQ(Lv2World& world, std::size_t maxFrames) {
    auto eq = std::make_unique<Lv2Contender>(
        world, "http://lsp-plug.in/plugins/lv2/para_equalizer_x16_stereo",
        AudioPorts{"in_l", "in_r", "out_l", "out_r"}, maxFrames);
    Lv2Plugin& plugin = eq->plugin();
    plugin.choose("mode", "IIR");
    plugin.choose("fft", "Off");
    plugin.set("fftv_l", 0);
    plugin.set("fftv_r", 0);
    for (std::size_t band = 0; band < kTenBands.size(); ++band) {
        const EQBandSetting& setting = kTenBands[band];
        const auto port = [band](const char* name) {
            return fmt::format("{}_{}", name, band);
        };
        plugin.choose(port("ft"), setting.shape == Shape::lowShelf    ? "Lo-shelf"
                                  : setting.shape == Shape::highShelf ? "Hi-shelf"
                                                                      : "Bell");
        // One second-order section a band, by the same formulas as ours.
        plugin.choose(port("fm"), "APO (DR)");
        plugin.choose(port("s"), "x1");
        plugin.set(port("f"), setting.frequency);
        plugin.set(port("g"), ratioOf(setting.gainDB));
        plugin.set(port("q"), setting.q);
    }
    eq->start();
    return eq;
}

std::unique_ptr<Lv2Contender> calfEQ(Lv2World& world, std::size_t maxFrames) {
    auto eq =
        std::make_unique<Lv2Contender>(world, "http://calf.sourceforge.net/plugins/Equalizer12Band",
                                       AudioPorts{"in_l", "in_r", "out_l", "out_r"}, maxFrames);
    Lv2Plugin& plugin = eq->plugin();
    plugin.set("analyzer", 0);
    plugin.set("individuals", 0);
    plugin.set("hp_active", 0);
    plugin.set("lp_active", 0);
    for (std::size_t band = 0; band < kTenBands.size(); ++band) {
        const EQBandSetting& setting = kTenBands[band];
        const std::string prefix = setting.shape == Shape::lowShelf    ? "ls"
                                   : setting.shape == Shape::highShelf ? "hs"
                                                                       : fmt::format("p{}", band);
        plugin.choose(prefix + "_active", "ON");
        plugin.set(prefix + "_level", ratioOf(setting.gainDB));
        plugin.set(prefix + "_freq", setting.frequency);
        plugin.set(prefix + "_q", setting.q);
    }
    eq->start();
    return eq;
}

std::unique_ptr<Lv2Contender> x42EQ(Lv2World& world, std::size_t maxFrames) {
    auto eq = std::make_unique<Lv2Contender>(world, "http://gareus.org/oss/lv2/fil4#stereo",
                                             AudioPorts{"inL", "inR", "outL", "outR"}, maxFrames);
    Lv2Plugin& plugin = eq->plugin();
    plugin.set("HighPass", 0);
    plugin.set("LowPass", 0);
    int section = 0;
    for (const EQBandSetting& setting : kSixBands) {
        const std::string shelf = setting.shape == Shape::lowShelf ? "LS" : "HS";
        const bool isPeak = setting.shape == Shape::peaking;
        if (isPeak)
            ++section;
        const auto port = [&](const char* name) {
            return isPeak ? fmt::format("{}{}", name, section) : shelf + name;
        };
        plugin.set(port("sec"), 1);
        plugin.set(port("freq"), setting.frequency);
        plugin.set(port("gain"), setting.gainDB);
        // Its measure is a bandwidth; at this one it is about as wide as ours.
        plugin.set(port("q"), 0.6);
    }
    eq->start();
    return eq;
}

} // namespace

std::vector<Lv2Peer> tenBandEQs() {
    return {{"LSP Parametric Equalizer x16, IIR", lspEQ}, {"Calf Equalizer 12 Band", calfEQ}};
}

std::vector<Lv2Peer> sixBandEQs() {
    return {{"x42 fil4", x42EQ}};
}

} // namespace orvanta::compare
