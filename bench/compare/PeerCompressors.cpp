#include "bench/compare/Peers.h"
#include "bench/compare/Settings.h"

#include <fmt/format.h>

namespace orvanta::compare {
namespace {

std::unique_ptr<Lv2Contender> lspCompressor(Lv2World& world, std::size_t maxFrames,
                                            std::string_view mode) {
    auto compressor =
        std::make_unique<Lv2Contender>(world, "http://lsp-plug.in/plugins/lv2/mb_compressor_stereo",
                                       AudioPorts{"in_l", "in_r", "out_l", "out_r"}, maxFrames);
    Lv2Plugin& plugin = compressor->plugin();
    plugin.choose("mode", mode);
    plugin.choose("envb", "None");
    for (const char* const drawing : {"flt", "ife_l", "ofe_l", "ife_r", "ofe_r"})
        plugin.set(drawing, 0);
    for (int split = 1; split <= 7; ++split)
        plugin.set(fmt::format("cbe_{}", split), split <= 2 ? 1 : 0);
    plugin.set("sf_1", kCrossovers[0]);
    plugin.set("sf_2", kCrossovers[1]);
    for (std::size_t band = 0; band < compression().bands.size(); ++band) {
        const CompressorBandSettings& setting = compression().bands[band];
        const auto port = [band](const char* name) {
            return fmt::format("{}_{}", name, band);
        };
        plugin.choose(port("scm"), "Peak");
        plugin.set(port("sla"), 0);
        plugin.choose(port("cm"), "Down");
        plugin.set(port("ce"), 1);
        plugin.set(port("al"), ratioOf(static_cast<double>(setting.threshold)));
        plugin.set(port("at"), static_cast<double>(setting.attackMs));
        plugin.set(port("rt"), static_cast<double>(setting.releaseMs));
        plugin.set(port("cr"), static_cast<double>(setting.ratio));
        plugin.set(port("kn"), ratioOf(-kKneeDB / 2)); // down to the knee's lower end
    }
    compressor->start();
    return compressor;
}

std::unique_ptr<Lv2Contender> lspClassic(Lv2World& world, std::size_t maxFrames) {
    return lspCompressor(world, maxFrames, "Classic");
}

std::unique_ptr<Lv2Contender> lspModern(Lv2World& world, std::size_t maxFrames) {
    return lspCompressor(world, maxFrames, "Modern");
}

/// It always splits into four; the fourth band only passes. A band's own bypass is on at first.
std::unique_ptr<Lv2Contender> calfCompressor(Lv2World& world, std::size_t maxFrames) {
    auto compressor = std::make_unique<Lv2Contender>(
        world, "http://calf.sourceforge.net/plugins/MultibandCompressor",
        AudioPorts{"in_l", "in_r", "out_l", "out_r"}, maxFrames);
    Lv2Plugin& plugin = compressor->plugin();
    plugin.choose("mode", "LR4");
    plugin.set("freq0", kCrossovers[0]);
    plugin.set("freq1", kCrossovers[1]);
    plugin.set("freq2", 20000);
    plugin.set("bypass3", 1);
    for (std::size_t band = 0; band < compression().bands.size(); ++band) {
        const CompressorBandSettings& setting = compression().bands[band];
        const auto port = [band](const char* name) {
            return fmt::format("{}{}", name, band);
        };
        plugin.set(port("bypass"), 0);
        plugin.choose(port("detection"), "Peak");
        plugin.set(port("threshold"), ratioOf(static_cast<double>(setting.threshold)));
        plugin.set(port("ratio"), static_cast<double>(setting.ratio));
        plugin.set(port("attack"), static_cast<double>(setting.attackMs));
        plugin.set(port("release"), static_cast<double>(setting.releaseMs));
        plugin.set(port("knee"), ratioOf(kKneeDB));
    }
    compressor->start();
    return compressor;
}

} // namespace

std::vector<Lv2Peer> multibandCompressors() {
    return {{"LSP Multiband Compressor, Classic", lspClassic},
            {"LSP Multiband Compressor, Modern", lspModern},
            {"Calf Multiband Compressor", calfCompressor}};
}

} // namespace orvanta::compare
