#include "bench/compare/Lv2Contender.h"

#include <utility>

namespace orvanta::compare {

Lv2Contender::Lv2Contender(Lv2World& world, const std::string& uri, AudioPorts ports,
                           std::size_t maxFrames)
    : ports_(std::move(ports)), plugin_(world, uri, kSampleRate, maxFrames) {
    plugin_.connect(ports_.inLeft, input().left);
    plugin_.connect(ports_.inRight, input().right);
    plugin_.connect(ports_.outLeft, output_.left.data());
    plugin_.connect(ports_.outRight, output_.right.data());
}

void Lv2Contender::follow(Lv2Contender& before) {
    plugin_.connect(ports_.inLeft, before.output_.left.data());
    plugin_.connect(ports_.inRight, before.output_.right.data());
}

} // namespace orvanta::compare
