#include "tests/e2e/support/EndToEndTest.h"

namespace orvanta::test {

namespace {

/// The measuring chain with nothing of ours in the path: what the other tests compare with.
class UntappedPlayers : public EndToEndTest, public testing::WithParamInterface<PlayerKind> {};

TEST_P(UntappedPlayers, AreHeardAtUnitySampleForSample) {
    const NoiseSignal noise(5);
    RealPlayer player(GetParam(), noiseFile(noise), server_.directory());
    const GraphObject stream = graph().awaitPlayback(player.pid());
    expectSignal(noise, Sound::own, stream.id);
}

INSTANTIATE_TEST_SUITE_P(EveryKind, UntappedPlayers,
                         testing::Values(PlayerKind::pwPlay, PlayerKind::paplay, PlayerKind::aplay,
                                         PlayerKind::sox, PlayerKind::mpv),
                         [](const auto& instance) {
                             std::string name = nameOf(instance.param);
                             std::erase(name, '-');
                             return name;
                         });

} // namespace

} // namespace orvanta::test
