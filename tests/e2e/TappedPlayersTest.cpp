#include "tests/e2e/support/EndToEndTest.h"
#include "tests/e2e/support/SignalMatch.h"
#include "tests/support/RealTimeTrap.h"

#include <algorithm>

namespace orvanta::test {

namespace {

class TappedPlayers : public EndToEndTest, public testing::WithParamInterface<PlayerKind> {};

TEST_P(TappedPlayers, SoundAsTheFileTimesTheVolumeSampleForSampleAndAsTheFileAfterRelease) {
    const NoiseSignal noise(11);
    RealPlayer player(GetParam(), noiseFile(noise), server_.directory());
    const GraphObject stream = graph().awaitPlayback(player.pid());

    mixer().tap(player.pid(), 0.5F);
    awaitTapped(player.pid());
    expectSignal(noise, Sound::halved, stream.id);

    mixer().manager().removeTap(player.pid());
    awaitOnly(player.pid(), "speakers");
    expectSignal(noise, Sound::own, stream.id);
#ifdef ORVANTA_HAS_REALTIME_TRAP
    EXPECT_GT(realTimeSectionsEntered(), 0U);
#endif
}

INSTANTIATE_TEST_SUITE_P(EveryKind, TappedPlayers,
                         testing::Values(PlayerKind::pwPlay, PlayerKind::paplay, PlayerKind::aplay,
                                         PlayerKind::sox, PlayerKind::mpv),
                         [](const auto& instance) {
                             std::string name = nameOf(instance.param);
                             std::erase(name, '-');
                             return name;
                         });

class TappedProgram : public EndToEndTest {
protected:
    /// The device carries what comes out of the program's stream, times `gain`.
    void expectTheStreamTimes(double gain, pid_t pid) {
        const GraphObject stream = graph().awaitPlayback(pid);
        const std::size_t programs = graph().outputPorts(stream.id).size();
        const Capture capture = recordUndisturbed(stream.id, "speakers", halfASecond);
        for (std::size_t channel = 0; channel < 2; ++channel) {
            const auto match = findSignal(capture.channels[programs + channel],
                                          capture.channels[programs == 1 ? 0 : channel]);
            ASSERT_TRUE(match);
            EXPECT_NEAR(match->gain, gain, rounding);
            EXPECT_LE(match->residual, rounding);
            // The first samples on the device left the stream before the recording began.
            EXPECT_EQ(static_cast<std::int64_t>(match->frames),
                      static_cast<std::int64_t>(capture.frames()) + match->offset);
        }
    }
};

TEST_F(TappedProgram, AtAnotherRateSoundsAsItsResampledStreamTimesTheVolume) {
    StreamClient client({.rate = 44100});
    client.open();
    mixer().tap(client.pid(), 0.5F);
    awaitTapped(client.pid());

    expectTheStreamTimes(0.5, client.pid());
}

TEST_F(TappedProgram, KeepsItsVolumeWhenTheServerChangesItsRate) {
    StreamClient client;
    client.open();
    mixer().tap(client.pid(), 0.5F);
    awaitTapped(client.pid());

    graph().forceRate(44100);
    const GraphObject stream = graph().awaitPlayback(client.pid());
    // A server that changes its rate while it still sets up the links to the tap breaks them, and
    // the tap comes anew.
    graph().await("the tap sounds at the new rate", [&] {
        const Capture capture = recordUndisturbed(stream.id, "speakers", 4096);
        return capture.sampleRate == 44100 && level(capture.channels.back()) > 0;
    });
    expectTheStreamTimes(0.5, client.pid());
}

TEST_F(TappedProgram, WithOneChannelSoundsOnBothSidesTimesTheVolume) {
    StreamClient client({.channels = 1});
    client.open();
    mixer().tap(client.pid(), 0.5F);
    awaitTapped(client.pid());

    const GraphObject stream = graph().awaitPlayback(client.pid());
    const Capture capture = recordUndisturbed(stream.id, "speakers", halfASecond);
    for (std::size_t channel = 1; channel <= 2; ++channel) {
        const auto& side = capture.channels[capture.channels.size() - channel];
        const PassageCounts counts = countPassages(side, client.noise(), 0, 0.5F);
        EXPECT_EQ(counts.gained, capture.frames()) << counts;
    }
}

TEST_F(TappedProgram, ThatIsMutedIsSilentOnTheDevice) {
    StreamClient client;
    client.open();
    mixer().tap(client.pid(), 1.0F);
    awaitTapped(client.pid());
    mixer().manager().setMuted(client.pid(), true);
    const std::uint64_t count = mixer().manager().getCallbackCount(client.pid());
    ASSERT_TRUE(eventually(
        Seconds(5), [&] { return mixer().manager().getCallbackCount(client.pid()) >= count + 2; }));

    const GraphObject stream = graph().awaitPlayback(client.pid());
    const Capture capture = recordUndisturbed(stream.id, "speakers", halfASecond);
    EXPECT_EQ(level(capture.channels[2]), 0.0);
    EXPECT_EQ(level(capture.channels[3]), 0.0);
    EXPECT_GT(level(capture.channels[0]), 0.1);
}

TEST_F(TappedProgram, BesideAnotherOnOneDeviceSoundsAtItsOwnVolume) {
    StreamClient client;
    client.open();
    graph().awaitPlayback(client.pid());
    RealPlayer other(PlayerKind::pwPlay, noiseFile(NoiseSignal(77)), server_.directory());
    graph().awaitPlayback(other.pid());
    mixer().tap(client.pid(), 0.5F);
    mixer().tap(other.pid(), 0.25F);
    awaitTapped(client.pid());
    awaitTapped(other.pid());

    // Two programs, two taps, one device: the sum of both, each at its own volume.
    EXPECT_LE(mixResidual("speakers", {{client.pid(), 0.5F}, {other.pid(), 0.25F}}), rounding);
}

} // namespace

} // namespace orvanta::test
