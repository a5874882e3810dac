#include "tests/e2e/support/EndToEndTest.h"

namespace orvanta::test {

namespace {

/// The measuring chain with nothing of ours in the path: what the other tests compare with.
class UntappedPlayers : public EndToEndTest, public testing::WithParamInterface<PlayerKind> {};

TEST_P(UntappedPlayers, AreHeardAtUnitySampleForSample) {
    const NoiseSignal noise(5);
    RealPlayer player(GetParam(), noiseFile(noise), server_.directory());
    const GraphObject stream = graph().awaitPlayback(player.pid());

    const Capture capture = recordUndisturbed(stream.id, "speakers", 24000);

    for (std::uint32_t channel = 0; channel < 2; ++channel) {
        const PassageCounts counts =
            countPassages(capture.channels[2 + channel], noise, channel, 0.5F);
        EXPECT_EQ(counts.leaked, capture.frames()) << counts;
    }
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
