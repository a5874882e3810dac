#include "tests/platform/pipewire/support/PipeWireTest.h"

#include <array>
#include <atomic>
#include <future>
#include <unistd.h>

namespace orvanta::test {
namespace {

/// A server that is there and says nothing. Not one call may wait for it without end, so all run on
/// a thread of their own while the test watches them.
class PipeWireStandstill : public PipeWireTest {
protected:
    void TearDown() override {
        server_.thawServer();
        PipeWireTest::TearDown();
    }

    /// Runs `call` while the server stands still and answers what it answered. The bound is many
    /// times what any call may take; it only ends a test that would hang.
    template <class Call>
    static auto bounded(Call call) {
        auto answer = std::async(std::launch::async, call);
        if (answer.wait_for(std::chrono::seconds(30)) != std::future_status::ready)
            throw std::runtime_error("a call does not return");
        return answer.get();
    }

    OSStatus createTap(AudioObjectID& tap, CATapMuteBehavior behavior = CATapMuted) {
        auto description = CATapDescription::stereoMixdownOfProcesses({process_});
        description.setMuteBehavior(behavior);
        tapUUID_ = description.UUID();
        return hardware().createProcessTap(description, tap);
    }

    OSStatus createAggregate(AudioObjectID& aggregate) {
        AggregateDeviceDescription description;
        description.uid = "aggregate";
        description.taps = {tapUUID_};
        description.subDevices = {"speakers"};
        return hardware().createAggregateDevice(description, aggregate);
    }

    OSStatus setVolume(float value) {
        return hardware().setPropertyData(device_, mainVolume, sizeof value, &value);
    }

    OSStatus listDevices() {
        std::uint32_t size = 0;
        return hardware().getPropertyDataSize(kAudioObjectSystemObject,
                                              {kAudioHardwarePropertyDevices}, size);
    }

    void meet() {
        stream_ = std::make_unique<OwnStream>();
        process_ = ownProcess();
        device_ = awaitDevice("speakers");
        awaitPlaysTo(::getpid(), "speakers");
        ASSERT_TRUE(eventually(soon, [&] { return hardware().hasProperty(device_, mainVolume); }));
    }

    static OSStatus heedless(AudioObjectID, const AudioObjectPropertyAddress&, void*) {
        return noErr;
    }

    static OSStatus idle(AudioObjectID, const AudioTimeStamp*, const AudioBufferList*,
                         const AudioTimeStamp*, AudioBufferList*, const AudioTimeStamp*, void*) {
        return noErr;
    }

    std::unique_ptr<OwnStream> stream_;
    AudioObjectID process_ = kAudioObjectUnknown;
    AudioObjectID device_ = kAudioObjectUnknown;
    std::string tapUUID_;
};

TEST_F(PipeWireStandstill, FailsANewTapAndAllIsWellAfterIt) {
    meet();
    server_.freezeServer();
    AudioObjectID tap = 4711;
    EXPECT_EQ(bounded([&] { return createTap(tap); }), kAudioHardwareNotRunningError);
    EXPECT_EQ(tap, 4711U);
    // From here on it is known, and nobody has to wait.
    EXPECT_EQ(bounded([&] { return createTap(tap); }), kAudioHardwareNotRunningError);
    EXPECT_EQ(bounded([&] { return listDevices(); }), kAudioHardwareNotRunningError);
    EXPECT_EQ(bounded([&] { return setVolume(0.5F); }), kAudioHardwareNotRunningError);
    EXPECT_FALSE(bounded([&] { return hardware().isServerReachable(); }));
    // Processes are the kernel's, not the server's.
    EXPECT_EQ(processWith(::getpid()), process_);

    server_.thawServer();
    EXPECT_TRUE(eventually(soon, [&] { return hardware().isServerReachable(); }));
    EXPECT_EQ(awaitDevice("speakers"), device_);
    awaitPlaysTo(::getpid(), "speakers");
    const PlayedTap played(hardware(), process_, "speakers");
    awaitTapped(::getpid(), "speakers");
}

TEST_F(PipeWireStandstill, IsFoundOutByWhoeverAsks) {
    meet();
    server_.freezeServer();
    EXPECT_TRUE(eventually(soon, [&] { return bounded([&] { return listDevices(); }) != noErr; }));
    EXPECT_FALSE(readString(hardware(), device_, {kAudioObjectPropertyName}).has_value());
    server_.thawServer();
    EXPECT_TRUE(eventually(soon, [&] { return listDevices() == noErr; }));
    EXPECT_EQ(awaitDevice("speakers"), device_);
    EXPECT_TRUE(log_.has(LogLevel::error, "The PipeWire server does not answer"));
    EXPECT_TRUE(log_.has(LogLevel::info, "The PipeWire server answers again"));
}

TEST_F(PipeWireStandstill, FailsANewVolume) {
    meet();
    server_.freezeServer();
    EXPECT_EQ(bounded([&] { return setVolume(0.5F); }), kAudioHardwareNotRunningError);
}

TEST_F(PipeWireStandstill, FailsANewAggregate) {
    meet();
    AudioObjectID tap = kAudioObjectUnknown;
    ASSERT_EQ(createTap(tap), noErr);
    server_.freezeServer();
    AudioObjectID aggregate = 4711;
    EXPECT_EQ(bounded([&] { return createAggregate(aggregate); }), kAudioHardwareNotRunningError);
    EXPECT_EQ(aggregate, 4711U);
    EXPECT_EQ(bounded([&] { return hardware().destroyProcessTap(tap); }), noErr);
    server_.thawServer();
    EXPECT_TRUE(eventually(soon, [&] { return tapNodes().empty(); }));
    awaitPlaysTo(::getpid(), "speakers");
}

// Whoever hears of a change reads the list, and takes one that is refused for the end of all
// devices.
TEST_F(PipeWireStandstill, TellsNobodyOfAListThatCannotBeRead) {
    meet();
    auto played = std::make_unique<PlayedTap>(hardware(), process_, "speakers");
    awaitTapped(::getpid(), "speakers");
    std::atomic<int> changes{0};
    const AudioObjectPropertyAddress list{kAudioHardwarePropertyDevices};
    const auto count = [](AudioObjectID, const AudioObjectPropertyAddress&, void* data) {
        ++*static_cast<std::atomic<int>*>(data);
        return noErr;
    };
    server_.freezeServer();
    EXPECT_TRUE(eventually(soon, [&] { return bounded([&] { return listDevices(); }) != noErr; }));
    ASSERT_EQ(hardware().addPropertyListener(kAudioObjectSystemObject, list, count, &changes),
              noErr);
    bounded([&] {
        played.reset();
        return 0;
    });
    EXPECT_EQ(changes, 0);

    server_.thawServer();
    EXPECT_TRUE(eventually(soon, [&] { return changes > 0; }));
    EXPECT_EQ(listDevices(), noErr);
    hardware().removePropertyListener(kAudioObjectSystemObject, list, count, &changes);
}

TEST_F(PipeWireStandstill, FailsTheFirstStart) {
    meet();
    AudioObjectID tap = kAudioObjectUnknown;
    AudioObjectID aggregate = kAudioObjectUnknown;
    AudioDeviceIOProcID proc = nullptr;
    // One that mutes at once might have its stream before the server stands still.
    ASSERT_EQ(createTap(tap, CATapMuteBehavior::mutedWhenTapped), noErr);
    ASSERT_EQ(createAggregate(aggregate), noErr);
    ASSERT_EQ(hardware().createIOProcID(aggregate, {idle, nullptr, nullptr}, proc), noErr);
    server_.freezeServer();
    EXPECT_NE(bounded([&] { return hardware().startDevice(aggregate, proc); }), noErr);
    EXPECT_EQ(bounded([&] { return hardware().destroyIOProcID(aggregate, proc); }), noErr);
    EXPECT_EQ(bounded([&] { return hardware().destroyAggregateDevice(aggregate); }), noErr);
    EXPECT_EQ(bounded([&] { return hardware().destroyProcessTap(tap); }), noErr);
    server_.thawServer();
    EXPECT_TRUE(eventually(soon, [&] { return tapNodes().empty(); }));
    awaitPlaysTo(::getpid(), "speakers");
}

TEST_F(PipeWireStandstill, LeavesWhatRunsToBeTakenDown) {
    meet();
    auto tap = std::make_unique<PlayedTap>(hardware(), process_, "speakers");
    awaitTapped(::getpid(), "speakers");
    const AudioObjectPropertyAddress name{kAudioObjectPropertyName};
    hardware().addPropertyListener(device_, name, heedless, nullptr);
    server_.freezeServer();
    EXPECT_EQ(bounded([&] {
                  return hardware().removePropertyListener(device_, name, heedless, nullptr);
              }),
              noErr);
    EXPECT_TRUE(bounded([&] {
        tap.reset();
        return true;
    }));
    server_.thawServer();
    EXPECT_TRUE(eventually(soon, [&] { return tapNodes().empty(); }));
    awaitPlaysTo(::getpid(), "speakers");
}

TEST_F(PipeWireStandstill, LeavesATapThatGoesOnAfterIt) {
    meet();
    const PlayedTap tap(hardware(), process_, "speakers");
    awaitTapped(::getpid(), "speakers");
    server_.freezeServer();
    EXPECT_TRUE(eventually(soon, [&] { return bounded([&] { return listDevices(); }) != noErr; }));
    server_.thawServer();
    const std::uint64_t before = tap.cycles();
    EXPECT_TRUE(eventually(
        soon, [&] { return tap.cycles() > before + 5 && tap.input() == OwnStream::level; }));
    awaitTapped(::getpid(), "speakers");
}

/// Nobody asks the server anything meanwhile, so nobody but the tap itself can notice.
TEST_F(PipeWireStandstill, DoesNotMakeATapGiveUpItsStreams) {
    meet();
    AudioObjectID tap = kAudioObjectUnknown;
    ASSERT_EQ(createTap(tap), noErr);
    server_.freezeServer();
    letTimePass(Seconds(3.0));
    server_.thawServer();
    graph().await("there is a tap", [&] { return tapNodes().size() == 1; });
    awaitPlaysTo(::getpid(), tapNodes().at(0).get("node.name"));
}

TEST_F(PipeWireStandstill, IsOverForWhoeverListensToTheLists) {
    meet();
    std::atomic<int> told{0};
    const auto count = [](AudioObjectID, const AudioObjectPropertyAddress&, void* data) {
        ++*static_cast<std::atomic<int>*>(data);
        return noErr;
    };
    const std::array<AudioObjectPropertyAddress, 3> lists{{
        {kAudioHardwarePropertyDevices},
        {kAudioHardwarePropertyDefaultOutputDevice},
        {kAudioHardwarePropertyProcessObjectList},
    }};
    server_.freezeServer();
    ASSERT_TRUE(eventually(soon, [&] { return bounded([&] { return listDevices(); }) != noErr; }));
    for (const auto& list : lists)
        ASSERT_EQ(hardware().addPropertyListener(kAudioObjectSystemObject, list, count, &told),
                  noErr);
    server_.thawServer();
    EXPECT_TRUE(eventually(soon, [&] { return told == 3; }));
    EXPECT_EQ(listDevices(), noErr);
    for (const auto& list : lists)
        hardware().removePropertyListener(kAudioObjectSystemObject, list, count, &told);
}

TEST_F(PipeWireStandstill, DoesNotKeepTheHardwareFromGoing) {
    meet();
    RecordingLog log;
    auto second = std::make_unique<PipeWireAudioHardware>(PipeWireOptions{}, log);
    ASSERT_TRUE(second->isServerReachable());
    auto description = CATapDescription::stereoMixdownOfProcesses(readObjectList(
        *second, kAudioObjectSystemObject, {kAudioHardwarePropertyProcessObjectList}));
    description.setMuteBehavior(CATapMuted);
    AudioObjectID tap = kAudioObjectUnknown;
    ASSERT_EQ(second->createProcessTap(description, tap), noErr);
    server_.freezeServer();
    EXPECT_TRUE(bounded([&] {
        second.reset();
        return true;
    }));
    server_.thawServer();
    EXPECT_TRUE(eventually(soon, [&] { return tapNodes().empty(); }));
    awaitPlaysTo(::getpid(), "speakers");
}

TEST_F(PipeWireStandstill, FromTheStartIsAsGoodAsNoServer) {
    server_.freezeServer();
    RecordingLog log;
    auto first = std::make_unique<PipeWireAudioHardware>(PipeWireOptions{}, log);
    EXPECT_FALSE(bounded([&] { return first->isServerReachable(); }));
    auto description = CATapDescription::stereoMixdownOfProcesses({4242});
    description.setMuteBehavior(CATapMuted);
    AudioObjectID tap = kAudioObjectUnknown;
    EXPECT_EQ(bounded([&] { return first->createProcessTap(description, tap); }),
              kAudioHardwareNotRunningError);
    server_.thawServer();
    EXPECT_TRUE(eventually(soon, [&] { return first->isServerReachable(); }));
    EXPECT_NE(findDeviceID(*first, "speakers"), kAudioObjectUnknown);
}

} // namespace
} // namespace orvanta::test
