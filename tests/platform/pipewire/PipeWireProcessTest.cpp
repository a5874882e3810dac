#include "tests/e2e/support/StreamClient.h"
#include "tests/platform/pipewire/support/PipeWireTest.h"

#include <unistd.h>

namespace orvanta::test {
namespace {

class PipeWireProcess : public PipeWireTest {
protected:
    [[nodiscard]] std::uint32_t isRunningOutput(AudioObjectID process) {
        return readUInt32(hardware(), process, {kAudioProcessPropertyIsRunningOutput}).value_or(9);
    }
};

TEST_F(PipeWireProcess, IsListedByTheVeryFirstRead) {
    StreamClient client;
    client.open();
    graph().awaitPlayback(client.pid());
    EXPECT_TRUE(processWith(client.pid()).has_value());
}

TEST_F(PipeWireProcess, OfThisProgramIsListedToo) {
    const OwnStream stream;
    EXPECT_NE(ownProcess(), kAudioObjectUnknown);
}

TEST_F(PipeWireProcess, RunsWhileItPlays) {
    StreamClient client;
    client.open();
    const AudioObjectID process = awaitProcess(client.pid());
    EXPECT_TRUE(eventually(soon, [&] { return isRunningOutput(process) == 1; }));
    EXPECT_EQ(readUInt32(hardware(), process, {kAudioProcessPropertyIsRunning}), 1U);
    client.pause();
    EXPECT_TRUE(eventually(soon, [&] { return isRunningOutput(process) == 0; }));
    client.resume();
    EXPECT_TRUE(eventually(soon, [&] { return isRunningOutput(process) == 1; }));
    client.close();
    EXPECT_TRUE(eventually(soon, [&] { return isRunningOutput(process) == 0; }));
    EXPECT_EQ(processWith(client.pid()), process);
}

TEST_F(PipeWireProcess, EndsWithTheProcess) {
    auto client = std::make_unique<StreamClient>();
    client->open();
    const pid_t pid = client->pid();
    const AudioObjectID process = awaitProcess(pid);
    client->close();
    client.reset();
    EXPECT_TRUE(eventually(soon, [&] { return !processWith(pid); }));
    EXPECT_EQ(isRunningOutput(process), 9U);
}

TEST_F(PipeWireProcess, OutlivesTheServer) {
    auto stream = std::make_unique<OwnStream>();
    const AudioObjectID process = ownProcess();
    killEverything();
    EXPECT_TRUE(eventually(soon, [&] { return isRunningOutput(process) == 0; }));
    EXPECT_EQ(processWith(::getpid()), process);
    stream.reset();
    startEverything();
    EXPECT_EQ(processWith(::getpid()), process);
    stream = std::make_unique<OwnStream>();
    EXPECT_TRUE(eventually(soon, [&] { return isRunningOutput(process) == 1; }));
    EXPECT_EQ(processWith(::getpid()), process);
}

TEST_F(PipeWireProcess, TellsItsListenersWhenItStartsAndStops) {
    struct Told {
        std::atomic<int> list{0};
        std::atomic<int> activity{0};
    } told;

    const auto count = [](AudioObjectID, const AudioObjectPropertyAddress& address, void* data) {
        auto& counts = *static_cast<Told*>(data);
        ++(address.mSelector == kAudioHardwarePropertyProcessObjectList ? counts.list
                                                                        : counts.activity);
        return OSStatus{noErr};
    };
    hardware().addPropertyListener(kAudioObjectSystemObject,
                                   {kAudioHardwarePropertyProcessObjectList}, count, &told);
    StreamClient client;
    client.open();
    EXPECT_TRUE(eventually(soon, [&] { return told.list > 0; }));
    const AudioObjectID process = awaitProcess(client.pid());
    hardware().addPropertyListener(process, {kAudioProcessPropertyIsRunningOutput}, count, &told);
    ASSERT_TRUE(eventually(soon, [&] { return isRunningOutput(process) == 1; }));
    const int before = told.activity;
    client.pause();
    EXPECT_TRUE(eventually(soon, [&] { return told.activity > before; }));
    hardware().removePropertyListener(process, {kAudioProcessPropertyIsRunningOutput}, count,
                                      &told);
    hardware().removePropertyListener(kAudioObjectSystemObject,
                                      {kAudioHardwarePropertyProcessObjectList}, count, &told);
}

} // namespace
} // namespace orvanta::test
