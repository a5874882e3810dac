#include "tests/e2e/support/EndToEndTest.h"
#include "tests/e2e/support/LeakBound.h"
#include "tests/e2e/support/ProcessorLoad.h"

#include <algorithm>
#include <iostream>
#include <span>

namespace orvanta::test {

namespace {

constexpr Seconds roundLength{0.3};
/// Sound leaks by whole cycles, so these have to be shorter than the bounds: 5.3 ms.
constexpr std::uint32_t quantum = 256;

/// How many milliseconds of the program's own sound got past its tap, round by round.
class Leaks : public EndToEndTest {
protected:
    void SetUp() override {
        EndToEndTest::SetUp();
        graph().forceQuantum(quantum);
        client_.open();
        mixer().tap(client_.pid(), 0.5F);
        awaitTapped(client_.pid());
    }

    /// Reads the recording of one device, cut where the rounds began.
    [[nodiscard]] std::vector<PassageCounts> countRounds(const Capture& capture,
                                                         std::size_t channel,
                                                         std::vector<std::size_t> starts) const {
        const PassageReader reader(client_.noise().channel(0, signalFrames), 0.5F);
        const std::span<const float> recording = capture.channels[channel];
        starts.push_back(capture.frames());
        std::vector<PassageCounts> rounds;
        for (std::size_t round = 0; round + 1 < starts.size(); ++round)
            rounds.push_back(count(
                reader.read(recording.subspan(starts[round], starts[round + 1] - starts[round]))));
        return rounds;
    }

    /// Milliseconds of un-gained sound in the worst round; prints all of them.
    static double worst(const char* what, const std::vector<PassageCounts>& rounds) {
        double most = 0;
        double sum = 0;
        std::cout << what << ", leaked ms per round:";
        for (const PassageCounts& round : rounds) {
            const double leaked =
                static_cast<double>(round.leaked + round.doubled) / framesPerMillisecond;
            std::cout << " " << leaked;
            most = std::max(most, leaked);
            sum += leaked;
        }
        std::cout << "; worst " << most << ", mean " << sum / static_cast<double>(rounds.size())
                  << "\n";
        return most;
    }

    std::vector<PassageCounts> reopenStreams(int rounds) {
        AlignedRecorder recorder(graph(), 1);
        recorder.listen(0, monitorPorts("speakers")[0]);
        std::vector<std::size_t> starts;
        for (int round = 0; round < rounds; ++round) {
            starts.push_back(recorder.frames());
            client_.close();
            client_.open();
            letTimePass(roundLength);
        }
        auto counts = countRounds(recorder.finish(), 0, starts);
        for (const PassageCounts& round : counts)
            EXPECT_GT(round.gained, 0U) << "the tap was not heard in a round: " << round;
        return counts;
    }

    /// Another program sends the stream away, to the device next to ours.
    std::vector<PassageCounts> moveStreamAway(int rounds) {
        AlignedRecorder recorder(graph(), 2);
        recorder.listen(0, monitorPorts("speakers")[0]);
        recorder.listen(1, monitorPorts("headphones")[0]);
        std::vector<std::size_t> starts;
        for (int round = 0; round < rounds; ++round) {
            // A new stream each time: one that is moved again and again is left to the mover.
            client_.close();
            client_.open();
            awaitTapped(client_.pid());
            letTimePass(Seconds(0.1));
            const GraphObject stream = graph().awaitPlayback(client_.pid());
            starts.push_back(recorder.frames());
            graph().setMetadata("default", stream.id, "target.object", "Spa:String", "headphones");
            letTimePass(roundLength);
            awaitTapped(client_.pid());
        }
        const Capture capture = recorder.finish();
        auto counts = countRounds(capture, 0, starts);
        const auto elsewhere = countRounds(capture, 1, starts);
        for (std::size_t round = 0; round < counts.size(); ++round) {
            EXPECT_GT(counts[round].gained, 0U) << "the tap was not heard: " << counts[round];
            counts[round].leaked += elsewhere[round].leaked + elsewhere[round].doubled;
        }
        return counts;
    }

    StreamClient client_;
};

TEST_F(Leaks, AreNoneOnAPlayingProgramAfterItsSwitch) {
    const GraphObject stream = graph().awaitPlayback(client_.pid());
    const Capture capture = recordUndisturbed(stream.id, "speakers", 48000);

    const PassageCounts counts = countPassages(capture.channels[2], client_.noise(), 0, 0.5F);
    EXPECT_EQ(counts.gained, capture.frames()) << counts;
}

TEST_F(Leaks, StayBelowTheBoundWhenAProgramReopensStreams) {
    const IdleShare idle;
    const double leaked = worst("reopened, idle", reopenStreams(20));
    EXPECT_LE(leaked, leakBoundAfter(idle));
}

TEST_F(Leaks, AreOneCycleAtMostWhenCyclesAreLongerThanTheBound) {
    constexpr std::uint32_t longQuantum = 1024;
    graph().forceQuantum(longQuantum);
    const IdleShare idle;
    const double leaked = worst("reopened, idle, 1024 frames", reopenStreams(20));
    EXPECT_LE(leaked, leakBoundAfter(idle, longQuantum));
}

TEST_F(Leaks, StayBelowTheBoundWhenAProgramReopensStreamsOnABusyMachine) {
    const ProcessorLoad load(4);
    EXPECT_LE(worst("reopened, 4 hogs", reopenStreams(10)), loadedLeakBoundMs);
}

TEST_F(Leaks, StayBelowTheBoundWhenAnotherProgramMovesTheStream) {
    graph().plug({.name = "headphones", .priority = 500});
    const IdleShare idle;
    const double leaked = worst("moved away, idle", moveStreamAway(10));
    EXPECT_LE(leaked, leakBoundAfter(idle));
}

TEST_F(Leaks, StayBelowTheBoundWhenAnotherProgramMovesTheStreamOnABusyMachine) {
    graph().plug({.name = "headphones", .priority = 500});
    const ProcessorLoad load(4);
    EXPECT_LE(worst("moved away, 4 hogs", moveStreamAway(10)), loadedLeakBoundMs);
}

class ArmedTap : public EndToEndTest {};

TEST_F(ArmedTap, LetsNothingOfAStreamThatOpensLaterPass) {
    StreamClient client;
    client.open();
    mixer().awaitProcess(client.pid());
    client.close();
    graph().await("the stream is gone",
                  [&] { return graph().playbackNodes(client.pid()).empty(); });
    mixer().tap(client.pid(), 0.5F);

    AlignedRecorder recorder(graph(), 2);
    recorder.listen(0, monitorPorts("speakers"));
    client.open();
    graph().awaitPlayback(client.pid());
    recorder.record(48000);
    const Capture capture = recorder.finish();

    const PassageCounts counts = countPassages(capture.channels[0], client.noise(), 0, 0.5F);
    EXPECT_GT(counts.gained, 24000U) << counts;
    EXPECT_EQ(counts.leaked + counts.doubled + counts.foreign, 0U) << counts;
}

} // namespace

} // namespace orvanta::test
