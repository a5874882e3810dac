#include "tests/e2e/support/EndToEndTest.h"

#include <cstdlib>

namespace orvanta::test {

namespace {

class ProcessList : public EndToEndTest {
protected:
    /// Asked many times over the whole time, so that no short absence is missed.
    void expectListedFor(pid_t pid, AudioObjectID process, Seconds time) {
        const double end = monotonicSeconds() + time.count();
        while (monotonicSeconds() < end) {
            ASSERT_EQ(mixer().processObject(pid), process);
            letTimePass(Seconds(0.02));
        }
    }
};

TEST_F(ProcessList, NamesEveryKindOfPlayerByItsOwnProcessId) {
    const auto file = noiseFile(NoiseSignal(5));
    for (const PlayerKind kind : {PlayerKind::pwPlay, PlayerKind::paplay, PlayerKind::aplay,
                                  PlayerKind::sox, PlayerKind::mpv}) {
        RealPlayer player(kind, file, server_.directory());
        const AudioObjectID process = mixer().awaitProcess(player.pid());
        EXPECT_TRUE(eventually(Seconds(5), [&] { return mixer().isRunningOutput(process); }))
            << nameOf(kind);
        player.stop();
        EXPECT_TRUE(eventually(
            Seconds(5), [&] { return mixer().processObject(player.pid()) == kAudioObjectUnknown; }))
            << nameOf(kind) << " is gone and still listed";
    }
}

TEST_F(ProcessList, SaysWhetherAProgramPlaysOrPauses) {
    StreamClient client;
    client.open();
    const AudioObjectID process = mixer().awaitProcess(client.pid());
    EXPECT_TRUE(eventually(Seconds(5), [&] { return mixer().isRunningOutput(process); }));
    client.pause();
    EXPECT_TRUE(eventually(Seconds(5), [&] { return !mixer().isRunningOutput(process); }));
    client.resume();
    EXPECT_TRUE(eventually(Seconds(5), [&] { return mixer().isRunningOutput(process); }));
}

TEST_F(ProcessList, KeepsAProcessWhoseStreamIsClosed) {
    StreamClient client;
    client.open();
    const AudioObjectID process = mixer().awaitProcess(client.pid());
    client.close();
    expectListedFor(client.pid(), process, Seconds(5));
}

TEST_F(ProcessList, KeepsAProcessThroughARestartOfTheServer) {
    StreamClient client;
    client.open();
    const AudioObjectID process = mixer().awaitProcess(client.pid());
    server_.killServer();
    expectListedFor(client.pid(), process, Seconds(1));
    server_.startServer();
    server_.startSessionManager();
    server_.startPulseBridge();
    reconnectGraph();
    expectListedFor(client.pid(), process, Seconds(2));
}

/// The long form, for the soak run.
TEST_F(ProcessList, SoakKeepsAProcessWhoseStreamIsClosedForAMinute) {
    StreamClient client;
    client.open();
    const AudioObjectID process = mixer().awaitProcess(client.pid());
    client.close();
    expectListedFor(client.pid(), process, Seconds(60));
}

} // namespace

} // namespace orvanta::test
