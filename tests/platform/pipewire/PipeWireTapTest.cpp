#include "tests/e2e/support/StreamClient.h"
#include "tests/platform/pipewire/support/PipeWireTest.h"
#include "tests/support/ChildProcess.h"

#include <algorithm>
#include <sys/resource.h>
#include <unistd.h>

namespace orvanta::test {
namespace {

class PipeWireTap : public PipeWireTest {
protected:
    /// A tap on a process that has a stream, heard.
    void tapOwnStream() {
        stream_ = std::make_unique<OwnStream>();
        awaitPlaysTo(::getpid(), "speakers");
        tap_ = std::make_unique<PlayedTap>(hardware(), ownProcess(), "speakers");
        awaitTapped(::getpid(), "speakers");
        ASSERT_TRUE(awaitSound());
    }

    [[nodiscard]] bool awaitSound() const {
        return eventually(soon, [&] { return tap_->input() == OwnStream::level; });
    }

    /// Whether the IOProc is called on and on, with silence.
    [[nodiscard]] bool getsSilentCycles() const {
        const std::uint64_t before = tap_->cycles();
        return eventually(soon, [&] { return tap_->cycles() > before + 5 && tap_->input() == 0; });
    }

    /// Whether the IOProc is left alone.
    [[nodiscard]] bool sleeps() const {
        letTimePass(Seconds(0.1));
        const std::uint64_t before = tap_->cycles();
        letTimePass(Seconds(1.0));
        return tap_->cycles() == before;
    }

    std::unique_ptr<OwnStream> stream_;
    std::unique_ptr<PlayedTap> tap_;
};

TEST_F(PipeWireTap, DeliversWhatTheProcessPlays) {
    tapOwnStream();
    const auto format = readTapFormat(hardware(), tap_->tap());
    ASSERT_TRUE(format);
    EXPECT_EQ(format->mSampleRate, 48000.0);
    EXPECT_EQ(format->mChannelsPerFrame, 2U);
    EXPECT_EQ(format->mFormatID, kAudioFormatLinearPCM);
}

TEST_F(PipeWireTap, GivesTheProcessItsOwnOutputBack) {
    tapOwnStream();
    tap_.reset();
    awaitPlaysTo(::getpid(), "speakers");
    EXPECT_TRUE(eventually(soon, [&] { return tapNodes().empty(); }));
}

TEST_F(PipeWireTap, GivesTheProcessBackToWhereItPlayedBefore) {
    graph().plug({.name = "headphones", .priority = 500});
    stream_ = std::make_unique<OwnStream>();
    const GraphObject stream = graph().awaitPlayback(::getpid());
    graph().setMetadata("default", stream.id, "target.object", "Spa:String", "headphones");
    awaitPlaysTo(::getpid(), "headphones");
    awaitDevice("speakers");
    tap_ = std::make_unique<PlayedTap>(hardware(), ownProcess(), "speakers");
    awaitTapped(::getpid(), "speakers");
    tap_.reset();
    awaitPlaysTo(::getpid(), "headphones");
}

TEST_F(PipeWireTap, LeavesTheProgramTheDeviceThatTheUserOnceChoseForIt) {
    graph().plug({.name = "headphones", .priority = 500});
    const auto play = [&] {
        auto client = std::make_unique<StreamClient>();
        client->open();
        graph().awaitPlayback(client->pid());
        return client;
    };
    auto client = play();
    // By its serial number, as mixers do it; the session manager then remembers it.
    graph().setMetadata("default", graph().awaitPlayback(client->pid()).id, "target.object",
                        "Spa:Id", graph().node("headphones")->get("object.serial"));
    awaitPlaysTo(client->pid(), "headphones");
    client.reset();

    client = play();
    awaitPlaysTo(client->pid(), "headphones");
    awaitDevice("speakers");
    tap_ = std::make_unique<PlayedTap>(hardware(), awaitProcess(client->pid()), "speakers");
    awaitTapped(client->pid(), "speakers");
    tap_.reset();
    awaitPlaysTo(client->pid(), "headphones");
    client.reset();

    client = play();
    awaitPlaysTo(client->pid(), "headphones");
}

TEST_F(PipeWireTap, MutesTheProcessAlsoWhenNobodyPlaysIt) {
    stream_ = std::make_unique<OwnStream>();
    awaitPlaysTo(::getpid(), "speakers");
    auto description = CATapDescription::stereoMixdownOfProcesses({ownProcess()});
    description.setMuteBehavior(CATapMuted);
    AudioObjectID tap = kAudioObjectUnknown;
    ASSERT_EQ(hardware().createProcessTap(description, tap), noErr);
    graph().await("there is a tap", [&] { return tapNodes().size() == 1; });
    awaitPlaysTo(::getpid(), tapNodes().at(0).get("node.name"));
    EXPECT_EQ(hardware().destroyProcessTap(tap), noErr);
    awaitPlaysTo(::getpid(), "speakers");
}

TEST_F(PipeWireTap, CatchesStreamsThatOpenLater) {
    tapOwnStream();
    stream_.reset();
    ASSERT_TRUE(getsSilentCycles());
    stream_ = std::make_unique<OwnStream>();
    EXPECT_TRUE(awaitSound());
    awaitTapped(::getpid(), "speakers");
}

TEST_F(PipeWireTap, TakesAMovedStreamBackThreeTimesAndThenLeavesItAlone) {
    graph().plug({.name = "headphones", .priority = 500});
    tapOwnStream();
    const GraphObject stream = graph().awaitPlayback(::getpid());
    const auto timesTakenBack = [&] {
        const auto texts = log_.texts();
        return std::count(texts.begin(), texts.end(),
                          "Stream " + std::to_string(stream.id) +
                              " was moved to 'headphones', taking it back");
    };
    for (int move = 1; move <= 3; ++move) {
        graph().setMetadata("default", stream.id, "target.object", "Spa:String", "headphones");
        ASSERT_TRUE(eventually(soon, [&] { return timesTakenBack() == move; }));
        awaitTapped(::getpid(), "speakers");
    }
    graph().setMetadata("default", stream.id, "target.object", "Spa:String", "headphones");
    awaitPlaysTo(::getpid(), "headphones");
    EXPECT_TRUE(eventually(soon, [&] {
        return log_.has(LogLevel::error, "Stream " + std::to_string(stream.id) +
                                             " is moved away again and again, leaving it alone");
    }));
    tap_.reset();
    awaitPlaysTo(::getpid(), "headphones");
}

TEST_F(PipeWireTap, IsCalledAtOnceEvenWithoutAStream) {
    stream_ = std::make_unique<OwnStream>();
    const AudioObjectID process = ownProcess();
    stream_.reset();
    graph().await("the stream is gone", [&] { return graph().playbackNodes(::getpid()).empty(); });
    awaitDevice("speakers");
    tap_ = std::make_unique<PlayedTap>(hardware(), process, "speakers");
    EXPECT_TRUE(eventually(soon, [&] { return tap_->cycles() > 0; }));
    EXPECT_TRUE(getsSilentCycles());
}

TEST_F(PipeWireTap, GetsSilentCyclesAfterAPauseUntilItIsAtRest) {
    tapOwnStream();
    stream_->pause();
    EXPECT_TRUE(getsSilentCycles());
    tap_->comeToRest(true);
    EXPECT_TRUE(sleeps());
    stream_->resume();
    EXPECT_TRUE(awaitSound());
    stream_->pause();
    EXPECT_TRUE(sleeps());
}

TEST_F(PipeWireTap, IsWokenFromRestByBeingStartedAgain) {
    tapOwnStream();
    tap_->comeToRest(true);
    stream_->pause();
    ASSERT_TRUE(sleeps());
    const std::uint64_t before = tap_->cycles();
    tap_->startAgain();
    EXPECT_TRUE(eventually(soon, [&] { return tap_->cycles() > before; }));
    EXPECT_TRUE(sleeps());
}

TEST_F(PipeWireTap, StopsOnlyWhenALongCallHasEnded) {
    tapOwnStream();
    tap_->dawdle(2500);
    ASSERT_TRUE(eventually(soon, [&] { return tap_->isInCall(); }));
    tap_->stop();
    EXPECT_FALSE(tap_->isInCall());
}

TEST_F(PipeWireTap, StopsOnlyBetweenCalls) {
    tapOwnStream();
    tap_->dawdle(3);
    for (int round = 0; round < 30; ++round) {
        const std::uint64_t before = tap_->cycles();
        ASSERT_TRUE(eventually(soon, [&] { return tap_->cycles() > before; }));
        tap_->stop();
        ASSERT_FALSE(tap_->isInCall());
        const std::uint64_t after = tap_->cycles();
        letTimePass(Seconds(0.005));
        ASSERT_EQ(tap_->cycles(), after);
        tap_->play("speakers");
    }
    tap_->dawdle(0);
    EXPECT_TRUE(awaitSound());
}

TEST_F(PipeWireTap, MovesToAnotherDevice) {
    graph().plug({.name = "headphones", .priority = 500});
    tapOwnStream();
    awaitDevice("headphones");
    for (const char* device : {"headphones", "speakers", "headphones"}) {
        tap_->stop();
        tap_->play(device);
        awaitTapped(::getpid(), device);
        EXPECT_TRUE(awaitSound());
    }
}

TEST_F(PipeWireTap, LeavesItsDeviceWhenNobodyPlaysItAnyMore) {
    tapOwnStream();
    tap_->stop();
    graph().await("the tap plays nowhere", [&] {
        const auto taps = tapNodes();
        return taps.size() == 1 && graph().targets(taps[0].id).empty();
    });
}

TEST_F(PipeWireTap, OnOneProcessIsTheOnlyOne) {
    tapOwnStream();
    auto description = CATapDescription::stereoMixdownOfProcesses({ownProcess()});
    description.setMuteBehavior(CATapMuted);
    AudioObjectID second = 4711;
    EXPECT_NE(hardware().createProcessTap(description, second), noErr);
    EXPECT_EQ(second, 4711U);
}

TEST_F(PipeWireTap, NeedsAProcessToTap) {
    awaitDevice("speakers");
    AudioObjectID tap = kAudioObjectUnknown;
    auto description = CATapDescription::stereoMixdownOfProcesses({4242});
    description.setMuteBehavior(CATapMuted);
    EXPECT_EQ(hardware().createProcessTap(description, tap), kAudioHardwareBadObjectError);
    description = CATapDescription::stereoMixdownOfProcesses({});
    description.setMuteBehavior(CATapMuted);
    EXPECT_NE(hardware().createProcessTap(description, tap), noErr);
}

TEST_F(PipeWireTap, IsRefusedWhenNoDescriptorsAreLeft) {
    stream_ = std::make_unique<OwnStream>();
    awaitPlaysTo(::getpid(), "speakers");
    awaitDevice("speakers");
    auto description = CATapDescription::stereoMixdownOfProcesses({ownProcess()});
    description.setMuteBehavior(CATapMuted);
    // The sanitizer's check of types opens a pipe for each type it has not met before.
    AudioObjectID tap = kAudioObjectUnknown;
    ASSERT_EQ(hardware().createProcessTap(description, tap), noErr);
    ASSERT_EQ(hardware().destroyProcessTap(tap), noErr);
    awaitPlaysTo(::getpid(), "speakers");
    tap = 4711;

    rlimit usual{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
    const int lowestFree = ::dup(STDIN_FILENO);
    ASSERT_GE(lowestFree, 0);
    ::close(lowestFree);
    const rlimit exhausted{static_cast<rlim_t>(lowestFree), usual.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &exhausted), 0);
    const OSStatus status = hardware().createProcessTap(description, tap);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &usual), 0);

    EXPECT_NE(status, noErr);
    EXPECT_EQ(tap, 4711U);
    tap_ = std::make_unique<PlayedTap>(hardware(), ownProcess(), "speakers");
    awaitTapped(::getpid(), "speakers");
}

TEST_F(PipeWireTap, NeverBecomesADevice) {
    tapOwnStream();
    for (const AudioObjectID device : deviceList(hardware())) {
        const auto uid = readString(hardware(), device, {kAudioDevicePropertyDeviceUID});
        EXPECT_TRUE(device == tap_->aggregate() || uid == "speakers");
    }
    EXPECT_EQ(graph().defaultSink(), "speakers");
}

TEST_F(PipeWireTap, OfAPlayerSurvivesTheEndOfThePlayer) {
    auto client = std::make_unique<StreamClient>();
    client->open();
    const AudioObjectID process = awaitProcess(client->pid());
    awaitDevice("speakers");
    tap_ = std::make_unique<PlayedTap>(hardware(), process, "speakers");
    client.reset();
    EXPECT_TRUE(getsSilentCycles());
}

TEST_F(PipeWireTap, GivesAStreamBackThatOutlivesItsProcess) {
    auto owner = std::make_unique<ChildProcess>(ChildProcess::Launch{.command = {"sleep", "600"}});
    const pid_t pid = owner->pid();
    stream_ = std::make_unique<OwnStream>(OwnStream::ofProcess(pid));
    awaitPlaysTo(pid, "speakers");
    awaitDevice("speakers");
    tap_ = std::make_unique<PlayedTap>(hardware(), awaitProcess(pid), "speakers");
    awaitTapped(pid, "speakers");
    owner.reset();
    awaitPlaysTo(pid, "speakers");
}

TEST_F(PipeWireTap, IsReleasedWhenTheHardwareGoes) {
    StreamClient client;
    client.open();
    graph().awaitPlayback(client.pid());
    RecordingLog log;
    {
        PipeWireAudioHardware second({}, log);
        AudioObjectID process = kAudioObjectUnknown;
        for (const AudioObjectID each : readObjectList(second, kAudioObjectSystemObject,
                                                       {kAudioHardwarePropertyProcessObjectList}))
            if (readInt32(second, each, {kAudioProcessPropertyPID}) == client.pid())
                process = each;
        auto description = CATapDescription::stereoMixdownOfProcesses({process});
        description.setMuteBehavior(CATapMuted);
        AudioObjectID tap = kAudioObjectUnknown;
        ASSERT_EQ(second.createProcessTap(description, tap), noErr);
        // The graph that the test sees has a connection of its own, which may be a moment behind.
        graph().await("there is a tap", [&] { return tapNodes().size() == 1; });
        awaitPlaysTo(client.pid(), tapNodes().at(0).get("node.name"));
    }
    awaitPlaysTo(client.pid(), "speakers");
}

} // namespace
} // namespace orvanta::test
