#pragma once

#include "bench/compare/Lv2Plugin.h"
#include "bench/compare/PlanarContender.h"

#include <string>

namespace orvanta::compare {

/// The symbols of a stereo plug-in's audio ports.
struct AudioPorts {
    std::string inLeft, inRight, outLeft, outRight;
};

/// A stereo LV2 plug-in. Whoever makes it sets its controls, then calls `start`.
class Lv2Contender : public PlanarContender {
public:
    Lv2Contender(Lv2World& world, const std::string& uri, AudioPorts ports, std::size_t maxFrames);

    [[nodiscard]] Lv2Plugin& plugin() noexcept { return plugin_; }

    void start() { plugin_.activate(); }

    /// From now on it reads where `before` writes, as in a host's chain.
    void follow(Lv2Contender& before);

    void run(std::size_t frames) noexcept override { plugin_.run(frames); }

    [[nodiscard]] const StereoBlock& output() const noexcept override { return output_; }

private:
    AudioPorts ports_;
    StereoBlock output_;
    Lv2Plugin plugin_;
};

} // namespace orvanta::compare
