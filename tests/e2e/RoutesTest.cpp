#include "tests/e2e/support/EndToEndTest.h"
#include "tests/e2e/support/GainTap.h"
#include "tests/e2e/support/SignalMatch.h"

namespace orvanta::test {

namespace {

class Routes : public EndToEndTest {
protected:
    void SetUp() override {
        EndToEndTest::SetUp();
        graph().plug({.name = "headphones", .priority = 500});
        mixer().awaitDevice("speakers");
        mixer().awaitDevice("headphones");
    }

    /// Taps a program that plays, at this volume on this device.
    void tapTo(const std::string& device, pid_t pid, float volume) {
        mixer().tap(pid, volume);
        ASSERT_TRUE(mixer().manager().routeToDevice(pid, device));
        awaitTapped(pid);
    }
};

TEST_F(Routes, OfTwoProgramsToTwoDevicesCarryEachExactlyItsOwn) {
    StreamClient first({.seed = 1, .name = "first"});
    StreamClient second({.seed = 2, .name = "second"});
    first.open();
    second.open();
    const GraphObject stream = graph().awaitPlayback(first.pid());
    const GraphObject otherStream = graph().awaitPlayback(second.pid());
    tapTo("speakers", first.pid(), 0.5F);
    tapTo("headphones", second.pid(), 0.25F);

    const Capture onSpeakers = recordUndisturbed(stream.id, "speakers", halfASecond);
    const Capture onHeadphones = recordUndisturbed(otherStream.id, "headphones", halfASecond);

    const PassageCounts ofFirst = countPassages(onSpeakers.channels[3], first.noise(), 1, 0.5F);
    const PassageCounts ofSecond =
        countPassages(onHeadphones.channels[3], second.noise(), 1, 0.25F);
    EXPECT_EQ(ofFirst.gained, onSpeakers.frames()) << ofFirst;
    EXPECT_EQ(ofSecond.gained, onHeadphones.frames()) << ofSecond;
}

TEST_F(Routes, ChangeWithoutForeignOrDoubledSamples) {
    StreamClient client;
    client.open();
    graph().awaitPlayback(client.pid());
    tapTo("speakers", client.pid(), 0.5F);

    AlignedRecorder recorder(graph(), 2);
    recorder.listen(0, monitorPorts("speakers")[0]);
    recorder.listen(1, monitorPorts("headphones")[0]);
    recorder.record(halfASecond);
    ASSERT_TRUE(mixer().manager().routeToDevice(client.pid(), "headphones"));
    recorder.record(halfASecond);
    const Capture capture = recorder.finish();

    for (const std::vector<float>& device : capture.channels) {
        const PassageCounts counts = countPassages(device, client.noise(), 0, 0.5F);
        EXPECT_GT(counts.gained, 0U) << counts;
        EXPECT_EQ(counts.leaked + counts.doubled + counts.foreign + counts.repeated, 0U) << counts;
    }
}

/// The port moves nothing of itself: the engine, which would, is left out.
TEST_F(Routes, FollowANewDefaultOnlyWhenToldTo) {
    StreamClient client;
    client.open();
    graph().awaitPlayback(client.pid());
    const GainTap tap(mixer().hardware(), mixer().awaitProcess(client.pid()), "speakers", 0.5F);
    awaitTapped(client.pid());

    graph().chooseDefault("headphones");
    awaitTapped(client.pid());

    const GraphObject stream = graph().awaitPlayback(client.pid());
    expectSignal(client.noise(), Sound::halved, stream.id);
}

class ChannelLayout : public EndToEndTest {
protected:
    /// Taps a playing client to a device and records: the client's two channels, then the device's.
    Capture recordTappedTo(const NullSink& device, StreamClient& client) {
        graph().plug(device);
        mixer().awaitDevice(device.name);
        client.open();
        const GraphObject stream = graph().awaitPlayback(client.pid());
        const GainTap tap(mixer().hardware(), mixer().awaitProcess(client.pid()), device.name,
                          0.5F);
        awaitTapped(client.pid());
        return recordUndisturbed(stream.id, device.name, halfASecond);
    }
};

TEST_F(ChannelLayout, OfOneChannelGetsHalfOfEachSide) {
    StreamClient client;
    const Capture capture =
        recordTappedTo({.name = "intercom", .positions = "MONO", .priority = 500}, client);

    const std::vector<float> left = client.noise().channel(0, signalFrames);
    const std::vector<float> right = client.noise().channel(1, signalFrames);
    std::vector<float> both(signalFrames);
    for (std::size_t frame = 0; frame < signalFrames; ++frame)
        both[frame] = 0.5F * (left[frame] + right[frame]);
    const auto counts = count(PassageReader(both, 0.5F).read(capture.channels[2]));
    EXPECT_EQ(counts.gained, capture.frames()) << counts;
}

TEST_F(ChannelLayout, OfSurroundGetsTheFrontSidesAlone) {
    StreamClient client;
    const Capture capture = recordTappedTo(
        {.name = "cinema", .positions = "FL,FR,FC,LFE,SL,SR", .priority = 500}, client);

    ASSERT_EQ(capture.channels.size(), 8U);
    for (std::uint32_t channel = 0; channel < 2; ++channel) {
        const auto counts =
            countPassages(capture.channels[2 + channel], client.noise(), channel, 0.5F);
        EXPECT_EQ(counts.gained, capture.frames()) << counts;
    }
    for (std::size_t channel = 4; channel < 8; ++channel)
        EXPECT_EQ(level(capture.channels[channel]), 0.0);
}

} // namespace

} // namespace orvanta::test
