#include "tests/e2e/support/EndToEndTest.h"
#include "tests/e2e/support/Footprint.h"

#include <algorithm>

namespace orvanta::test {

namespace {

constexpr std::uint32_t releaseQuantum = 1024;

class Release : public EndToEndTest {
protected:
    /// A recording of the device across the release of a tap, without a cycle missed.
    Capture recordRelease(StreamClient& client) {
        const auto end = std::chrono::steady_clock::now() + mostRecordingTime;
        do {
            mixer().tap(client.pid(), 0.5F);
            awaitTapped(client.pid());
            AlignedRecorder recorder(graph(), 1);
            recorder.listen(0, monitorPorts("speakers")[0]);
            recorder.record(16384);
            mixer().manager().removeTap(client.pid());
            recorder.record(16384);
            awaitOnly(client.pid(), "speakers");
            Capture capture = recorder.finish();
            if (capture.discontinuities() == 0)
                return capture;
        } while (std::chrono::steady_clock::now() < end);
        throw std::runtime_error("the machine missed cycles in every recording");
    }
};

TEST_F(Release, DoublesNoSampleAndIsSilentForOneCycleAtMost) {
    graph().forceQuantum(releaseQuantum);
    StreamClient client;
    client.open();
    graph().awaitPlayback(client.pid());

    for (int round = 0; round < 4; ++round) {
        const Capture capture = recordRelease(client);
        const auto passages =
            PassageReader(client.noise().channel(0, signalFrames), 0.5F).read(capture.channels[0]);
        const PassageCounts counts = count(passages);
        EXPECT_GT(counts.gained, 0U) << counts;
        EXPECT_GT(counts.leaked, 0U) << counts;
        EXPECT_EQ(counts.doubled + counts.foreign + counts.repeated, 0U) << counts;
        EXPECT_LE(counts.longestGap, releaseQuantum) << counts;
        EXPECT_LE(counts.lost, releaseQuantum) << counts;
    }
}

// The server may be in the middle of telling the tap's node of its links.
TEST_F(Release, RightAfterTheTapHasComeLeavesNoDescriptorsOpen) {
    StreamClient client;
    client.open();
    graph().awaitPlayback(client.pid());
    mixer().tap(client.pid(), 0.5F);
    mixer().manager().removeTap(client.pid());
    awaitOnly(client.pid(), "speakers");
    const Footprint before = Footprint::now();

    for (int round = 0; round < 20; ++round) {
        mixer().tap(client.pid(), 0.5F);
        letTimePass(Seconds(0.001 * round));
        mixer().manager().removeTap(client.pid());
    }
    awaitOnly(client.pid(), "speakers");
    EXPECT_TRUE(eventually(Seconds(5), [&] {
        return Footprint::now().descriptors <= before.descriptors;
    })) << openDescriptors();
}

} // namespace

} // namespace orvanta::test
