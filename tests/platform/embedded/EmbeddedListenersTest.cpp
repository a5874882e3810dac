#include "platform/embedded/EmbeddedAudioServer.h"
#include "tests/platform/embedded/ListenerLog.h"
#include "tests/platform/embedded/PropertyReads.h"

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <thread>

namespace orvanta::embedded {
namespace {

using test::global;
using test::ListenerLog;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using namespace std::chrono_literals;

constexpr auto kSystemObject = kAudioObjectSystemObject;

class EmbeddedListeners : public testing::Test {
protected:
    EmbeddedAudioServer server;
    AudioObjectID speakers = server.addDevice({.uid = "speakers", .sampleRateSettable = true});
    AudioObjectID music = server.addProgram({.pid = 100});
    ListenerLog listener;
};

TEST_F(EmbeddedListeners, HearOfProgramsThatComeAndGo) {
    listener.listen(server, kSystemObject, global(kAudioHardwarePropertyProcessObjectList));
    const auto player = server.addProgram({.pid = 101});
    EXPECT_THAT(listener.heard(), ElementsAre("1 prs#"));
    server.exitProgram(player);
    EXPECT_THAT(listener.heard(), ElementsAre("1 prs#"));
}

TEST_F(EmbeddedListeners, HearOfAProgramThatStartsAndStops) {
    const auto id = std::to_string(music);
    listener.listen(server, music, global(kAudioProcessPropertyIsRunningOutput));
    listener.listen(server, music, global(kAudioProcessPropertyIsRunning));
    server.pauseProgram(music);
    EXPECT_THAT(listener.heard(), ElementsAre(id + " piro", id + " pir?"));
    server.pauseProgram(music);
    EXPECT_THAT(listener.heard(), IsEmpty());
    server.setRecording(music, true);
    EXPECT_THAT(listener.heard(), ElementsAre(id + " pir?"));
    server.resumeProgram(music);
    EXPECT_THAT(listener.heard(), ElementsAre(id + " piro"));
}

TEST_F(EmbeddedListeners, HearOfVolumeAndRate) {
    const auto id = std::to_string(speakers);
    listener.listen(server, speakers, test::outputVolume(0));
    listener.listen(server, speakers, global(kAudioDevicePropertyNominalSampleRate));
    test::write(server, speakers, test::outputVolume(0), 0.5F);
    server.setSampleRate(speakers, 96000);
    server.setSampleRate(speakers, 96000);
    EXPECT_THAT(listener.heard(), ElementsAre(id + " volm", id + " nsrt"));
}

TEST_F(EmbeddedListeners, AreCalledByHandToo) {
    listener.listen(server, kSystemObject, global(kAudioHardwarePropertyDefaultOutputDevice));
    server.notify(kSystemObject, global(kAudioHardwarePropertyDefaultOutputDevice));
    server.notify(kSystemObject, global(kAudioHardwarePropertyDevices));
    EXPECT_THAT(listener.heard(), ElementsAre("1 dOut"));
}

TEST_F(EmbeddedListeners, NeedAnObjectWithThatProperty) {
    EXPECT_EQ(listener.listen(server, 777, global(kAudioHardwarePropertyDevices)),
              kAudioHardwareBadObjectError);
    EXPECT_EQ(listener.listen(server, speakers, global(kAudioHardwarePropertyDevices)),
              kAudioHardwareUnknownPropertyError);
    EXPECT_EQ(server.addPropertyListener(kSystemObject, global(kAudioHardwarePropertyDevices),
                                         nullptr, nullptr),
              kAudioHardwareIllegalOperationError);
}

TEST_F(EmbeddedListeners, AddedTwiceHearOnceAndRemovedHearNoMore) {
    const auto devices = global(kAudioHardwarePropertyDevices);
    EXPECT_EQ(listener.listen(server, kSystemObject, devices), noErr);
    EXPECT_EQ(listener.listen(server, kSystemObject, devices), noErr);
    server.addDevice({});
    EXPECT_THAT(listener.heard(), SizeIs(1));
    EXPECT_EQ(listener.stopListening(server, kSystemObject, devices), noErr);
    EXPECT_EQ(listener.stopListening(server, kSystemObject, devices),
              kAudioHardwareIllegalOperationError);
    server.addDevice({});
    EXPECT_THAT(listener.heard(), IsEmpty());
}

TEST_F(EmbeddedListeners, OfAnObjectThatIsGoneAreForgotten) {
    listener.listen(server, speakers, global(kAudioObjectPropertyName));
    EXPECT_EQ(server.holdings().listeners, 1U);
    server.removeDevice(speakers);
    EXPECT_EQ(server.holdings().listeners, 0U);
    EXPECT_EQ(listener.stopListening(server, speakers, global(kAudioObjectPropertyName)),
              kAudioHardwareBadObjectError);
}

TEST_F(EmbeddedListeners, MayAskTheServerBack) {
    struct Asker {
        EmbeddedAudioServer& server;
        std::size_t devices = 0;
    } asker{server};

    const auto ask = [](AudioObjectID object, const AudioObjectPropertyAddress& address,
                        void* clientData) -> OSStatus {
        auto& self = *static_cast<Asker*>(clientData);
        self.devices = test::sizeOf(self.server, object, address).size / sizeof(AudioObjectID);
        return noErr;
    };
    server.addPropertyListener(kSystemObject, global(kAudioHardwarePropertyDevices), ask, &asker);
    server.addDevice({});
    EXPECT_EQ(asker.devices, 2U);
}

TEST_F(EmbeddedListeners, MayRemoveThemselves) {
    struct Once {
        EmbeddedAudioServer& server;
        int calls = 0;

        static OSStatus hear(AudioObjectID object, const AudioObjectPropertyAddress& address,
                             void* clientData) {
            auto& self = *static_cast<Once*>(clientData);
            ++self.calls;
            return self.server.removePropertyListener(object, address, &Once::hear, clientData);
        }
    } once{server};

    server.addPropertyListener(kSystemObject, global(kAudioHardwarePropertyDevices), &Once::hear,
                               &once);
    server.addDevice({});
    server.addDevice({});
    EXPECT_EQ(once.calls, 1);
}

/// Stays in its call until it is let go.
struct Slow {
    std::promise<void> entered;
    std::promise<void> release;
    std::atomic<bool> left = false;

    static OSStatus hear(AudioObjectID, const AudioObjectPropertyAddress&, void* clientData) {
        auto& self = *static_cast<Slow*>(clientData);
        self.entered.set_value();
        self.release.get_future().wait();
        self.left = true;
        return noErr;
    }
};

TEST_F(EmbeddedListeners, RemovalWaitsForACallInFlight) {
    Slow slow;
    const auto devices = global(kAudioHardwarePropertyDevices);
    server.addPropertyListener(kSystemObject, devices, &Slow::hear, &slow);
    std::thread changer([&] { server.addDevice({}); });
    slow.entered.get_future().wait();
    std::thread releaser([&] {
        // The removal is under way when its call stands in the journal.
        while (server.journal().count(Operation::removePropertyListener) == 0)
            std::this_thread::yield();
        slow.release.set_value();
    });

    EXPECT_EQ(server.removePropertyListener(kSystemObject, devices, &Slow::hear, &slow), noErr);

    EXPECT_TRUE(slow.left);
    changer.join();
    releaser.join();
}

TEST_F(EmbeddedListeners, RemovalWaitsForACallInFlightOfAnObjectThatIsGone) {
    Slow slow;
    const auto name = global(kAudioObjectPropertyName);
    server.addPropertyListener(speakers, name, &Slow::hear, &slow);
    std::thread changer([&] { server.renameDevice(speakers, "Loudspeakers"); });
    slow.entered.get_future().wait();
    server.removeDevice(speakers);

    auto removal = std::async(std::launch::async, [&] {
        const OSStatus status = server.removePropertyListener(speakers, name, &Slow::hear, &slow);
        EXPECT_TRUE(slow.left);
        return status;
    });
    // No wait proves that it never returns too early, but one that would is caught here.
    EXPECT_EQ(removal.wait_for(100ms), std::future_status::timeout);
    slow.release.set_value();

    EXPECT_EQ(removal.get(), kAudioHardwareBadObjectError);
    changer.join();
}

TEST_F(EmbeddedListeners, AreNotCalledAfterTheirRemovalWhileTheirObjectGoes) {
    struct Cycle {
        std::atomic<bool> entered = false;
        std::atomic<bool> released = false;

        static OSStatus run(AudioObjectID, const AudioTimeStamp*, const AudioBufferList*,
                            const AudioTimeStamp*, AudioBufferList*, const AudioTimeStamp*,
                            void* clientData) {
            auto& self = *static_cast<Cycle*>(clientData);
            self.entered = true;
            while (!self.released)
                std::this_thread::yield();
            return noErr;
        }
    } cycle;

    const auto name = global(kAudioObjectPropertyName);
    listener.listen(server, speakers, name);
    AudioDeviceIOProcID proc = nullptr;
    ASSERT_EQ(server.createIOProcID(speakers, {&Cycle::run, &cycle}, proc), noErr);
    ASSERT_EQ(server.startDevice(speakers, proc), noErr);
    std::thread clock([&] { server.step(speakers); });
    while (!cycle.entered)
        std::this_thread::yield();
    // The device goes, but its listeners are not forgotten yet: the change waits for the cycle.
    std::thread changer([&] { server.removeDevice(speakers); });
    while (server.hasProperty(speakers, name))
        std::this_thread::yield();

    EXPECT_EQ(listener.stopListening(server, speakers, name), kAudioHardwareBadObjectError);
    server.notify(speakers, name);
    EXPECT_THAT(listener.heard(), IsEmpty());

    cycle.released = true;
    clock.join();
    changer.join();
}

} // namespace
} // namespace orvanta::embedded
