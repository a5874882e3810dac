// Devices that vanish and defaults that move while taps run, in virtual time.

#include "tests/core/engine/EngineNames.h"
#include "tests/core/engine/TapOnSpeakersTest.h"

#include <gmock/gmock.h>

#include <thread>

namespace orvanta::test {
namespace {

using namespace std::chrono_literals;
using embedded::Journal;
using embedded::Operation;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

constexpr AudioObjectPropertyAddress deviceListChange{kAudioHardwarePropertyDevices};
constexpr AudioObjectPropertyAddress defaultChange{kAudioHardwarePropertyDefaultOutputDevice};

class DeviceChange : public TapOnSpeakersTest {
protected:
    DeviceChange() {
        runPosted();
        rig.forget();
    }

    /// Runs what waits on the main queue, without letting time pass.
    void runPosted() { rig.runLoop.runUntilIdle(); }

    /// Moves the tap and lets what the move itself announces pass by.
    void choose(const std::string& uid) {
        ASSERT_TRUE(rig.manager->routeToDevice(pid, uid));
        runPosted();
        rig.forget();
    }

    /// The lines that tell of changes, in order; those of every build, start and first callback
    /// left out.
    std::vector<std::string> lines() {
        std::vector<std::string> told;
        for (const std::string& text : rig.log.texts())
            if (!text.starts_with("🔬") && !text.starts_with("Audio buffers:") &&
                text != "Audio pipeline started")
                told.push_back(text);
        return told;
    }

    [[nodiscard]] std::size_t builds() {
        return rig.server.journal().count(Operation::createAggregateDevice);
    }

    AudioObjectID aggregate() { return rig.server.holdings().aggregates.at(0); }
};

// ---- listeners

TEST_F(DeviceChange, TheManagerListensToTheListAndTheDefaultInThisOrder) {
    EmbeddedAudioServer server;
    PlatformFakes fakes;
    auto manager = std::make_unique<AudioTapManager>(fakes.platformWith(server));
    const auto added = server.journal().entries(Journal::of(Operation::addPropertyListener));
    ASSERT_EQ(added.size(), 2U);
    EXPECT_EQ(added[0].address, deviceListChange);
    EXPECT_EQ(added[1].address, defaultChange);
    EXPECT_TRUE(fakes.log.has(LogLevel::debug, "🎧 Listeners: devices=✅ default=✅\n"));
    server.journal().clear();
    manager.reset();
    const auto removed = server.journal().entries(Journal::of(Operation::removePropertyListener));
    ASSERT_EQ(removed.size(), 2U);
    EXPECT_EQ(removed[0].address, deviceListChange);
    EXPECT_EQ(removed[1].address, defaultChange);
    EXPECT_EQ(server.holdings().listeners, 0U);
}

TEST_F(DeviceChange, AListenerThatCannotBeAddedIsToldAndNotRemoved) {
    const std::vector<std::pair<AudioObjectPropertySelector, std::string>> cases{
        {kAudioHardwarePropertyDevices, "🎧 Listeners: devices=❌ default=✅\n"},
        {kAudioHardwarePropertyDefaultOutputDevice, "🎧 Listeners: devices=✅ default=❌\n"}};
    for (const auto& [selector, line] : cases) {
        EmbeddedAudioServer server;
        server.faults().add({.operation = Operation::addPropertyListener, .selector = selector});
        PlatformFakes fakes;
        auto manager = std::make_unique<AudioTapManager>(fakes.platformWith(server));
        EXPECT_THAT(fakes.log.texts(), ElementsAre(line));
        manager.reset();
        EXPECT_EQ(server.journal().count(Operation::removePropertyListener), 1U);
    }
}

TEST_F(DeviceChange, EveryNotificationIsOneTaskOnTheMainQueueAndNothingElse) {
    rig.server.notify(kAudioObjectSystemObject, deviceListChange);
    rig.server.notify(kAudioObjectSystemObject, deviceListChange);
    rig.server.notify(kAudioObjectSystemObject, defaultChange);
    EXPECT_THAT(rig.server.journal().entries(), IsEmpty());
    EXPECT_EQ(rig.runLoop.runUntilIdle(), 3U);
}

// ---- a device vanishes

TEST_F(DeviceChange, ATapWhoseChosenDeviceIsGonePlaysOnTheDefaultHalfASecondLater) {
    rig.manager->setVolume(pid, 2.0F);
    rig.manager->setBalance(pid, 0.25F);
    rig.manager->setEQ(pid, 2, 3.0F);
    rig.manager->setMuted(pid, true);
    choose("headphones");
    const auto mix = std::to_string(aggregate());

    rig.server.removeDevice(headphones);
    rig.runLoop.advance(499ms);
    EXPECT_THAT(lines(), ElementsAre("⚠️ Audio device " + mix +
                                     " no longer in device list for PID 100\n"));
    EXPECT_THAT(rig.manager->getOutputDeviceUID(pid), Optional(std::string("headphones")));
    rig.runLoop.advance(1ms);
    EXPECT_THAT(
        lines(),
        ElementsAre("⚠️ Audio device " + mix + " no longer in device list for PID 100\n",
                    "🔄 Re-routing PID 100 to default output after device disconnect\n",
                    "Routed PID 100 to device: default"));
    EXPECT_EQ(rig.manager->getOutputDeviceUID(pid), std::nullopt);
    EXPECT_THAT(rig.manager->getVolume(pid), Optional(2.0F));
    EXPECT_THAT(rig.manager->getBalance(pid), Optional(0.25F));
    EXPECT_EQ(rig.manager->getEQ(pid)->gains[2], 3.0F);
    EXPECT_TRUE(rig.manager->isMuted(pid));
    rig.manager->setMuted(pid, false);
    EXPECT_GT(rig.nextCycle(rig.speakers).back(), 0.0F);
    rig.runLoop.advance(1h);
    EXPECT_EQ(lines().size(), 3U) << "no retry";
}

TEST_F(DeviceChange, ATapStaysOnTheDefaultWhenItsChosenDeviceReturns) {
    choose("headphones");
    rig.server.removeDevice(headphones);
    rig.runLoop.advance(1s);
    rig.log.clear();
    rig.addDevice("headphones");
    rig.runLoop.advance(1h);
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_EQ(rig.manager->getOutputDeviceUID(pid), std::nullopt);
}

TEST_F(DeviceChange, ALostBluetoothDeviceIsToldBeforeAnythingIsAskedOfTheAggregate) {
    const AudioObjectID headset = rig.addDevice("headset", kAudioDeviceTransportTypeBluetooth);
    choose("headset");
    rig.server.removeDevice(headset);
    runPosted();
    EXPECT_THAT(lines(), ElementsAre("⚠️ BT device " + std::to_string(headset) +
                                     " disconnected for PID 100\n"));
    EXPECT_EQ(rig.state().btOutputDeviceID, kAudioObjectUnknown);
    for (const auto& entry : rig.server.journal().entries())
        EXPECT_NE(entry.address->mSelector, kAudioAggregateDevicePropertyActiveSubDeviceList);
    rig.runLoop.advance(500ms);
    EXPECT_THAT(rig.nextCycle(rig.speakers), Each(0.5F));
}

/// Answers of its own about the sub-devices of aggregates.
class ServerWithStaleAggregates final : public EmbeddedAudioServer {
public:
    using EmbeddedAudioServer::EmbeddedAudioServer;

    OSStatus getPropertyDataSize(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                 std::uint32_t& outSize) override {
        if (isStale(address)) {
            outSize = static_cast<std::uint32_t>(subDevices->size() * sizeof(AudioObjectID));
            return noErr;
        }
        return EmbeddedAudioServer::getPropertyDataSize(object, address, outSize);
    }

    OSStatus getPropertyData(AudioObjectID object, const AudioObjectPropertyAddress& address,
                             std::uint32_t& ioSize, void* outData) override {
        if (isStale(address)) {
            askedScope = address.mScope;
            std::copy(subDevices->begin(), subDevices->end(), static_cast<AudioObjectID*>(outData));
            return noErr;
        }
        return EmbeddedAudioServer::getPropertyData(object, address, ioSize, outData);
    }

    /// None: the truth.
    std::optional<std::vector<AudioObjectID>> subDevices;
    AudioObjectPropertyScope askedScope = 0;

private:
    [[nodiscard]] bool isStale(const AudioObjectPropertyAddress& address) const {
        return subDevices && address.mSelector == kAudioAggregateDevicePropertyActiveSubDeviceList;
    }
};

class StaleAggregate : public testing::Test {
protected:
    StaleAggregate() {
        speakers =
            server.addDevice({.uid = "speakers", .transport = kAudioDeviceTransportTypeBluetooth});
        const auto program = server.addProgram({.pid = pid});
        manager.createTap(pid, program);
        fakes.runLoop.advance(1s);
        fakes.log.clear();
    }

    void deviceListChanges() {
        server.notify(kAudioObjectSystemObject, deviceListChange);
        fakes.runLoop.runUntilIdle();
    }

    ServerWithStaleAggregates server;
    PlatformFakes fakes;
    AudioObjectID speakers = kAudioObjectUnknown;
    AudioTapManager manager{fakes.platformWith(server)};
};

TEST_F(StaleAggregate, IsLostWhenItsFirstSubDeviceIsNotInTheList) {
    server.subDevices = {9999, speakers};
    deviceListChanges();
    EXPECT_THAT(fakes.log.texts(),
                ElementsAre("⚠️ Aggregate output device 9999 disappeared for PID 100\n"));
    EXPECT_EQ(server.askedScope, kAudioObjectPropertyScopeOutput);
    EXPECT_EQ(fakes.runLoop.timeToNextTask(), Seconds(0.5));
}

TEST_F(StaleAggregate, IsNotLostForALaterSubDevice) {
    server.subDevices = {speakers, 9999};
    deviceListChanges();
    EXPECT_THAT(fakes.log.texts(), IsEmpty());
}

TEST_F(StaleAggregate, IsJudgedByItselfWhenItsFirstSubDeviceIsNone) {
    server.subDevices = {kAudioObjectUnknown};
    deviceListChanges();
    EXPECT_THAT(fakes.log.texts(), IsEmpty());
    EXPECT_EQ(fakes.runLoop.timeToNextTask(), std::nullopt);
}

TEST_F(StaleAggregate, ForgetsItsBluetoothDeviceAndIsThenJudgedByItself) {
    const auto aggregate = server.holdings().aggregates.at(0);
    // The first loss makes it forget that its device is a Bluetooth one.
    server.subDevices = {9999};
    deviceListChanges();
    server.subDevices = {kAudioObjectUnknown};
    server.removeDevice(speakers);
    fakes.runLoop.runUntilIdle();
    EXPECT_THAT(fakes.log.texts(), Contains("⚠️ Audio device " + std::to_string(aggregate) +
                                            " no longer in device list for PID 100\n"));
}

TEST_F(StaleAggregate, IsLostAlsoWhenNothingRunsOnIt) {
    server.failNext(Operation::startDevice, refusal);
    ASSERT_FALSE(manager.routeToDevice(pid, std::nullopt));
    fakes.runLoop.runUntilIdle();
    fakes.log.clear();
    server.subDevices = {9999};
    deviceListChanges();
    EXPECT_THAT(fakes.log.texts(),
                ElementsAre("⚠️ Aggregate output device 9999 disappeared for PID 100\n"));
}

TEST_F(DeviceChange, ATapThatPlaysNowhereHasNoDeviceToLose) {
    rig.server.failNext(Operation::createAggregateDevice, refusal, 2);
    ASSERT_FALSE(rig.manager->routeToDevice(pid, "headphones"));
    rig.log.clear();
    rig.server.notify(kAudioObjectSystemObject, deviceListChange);
    runPosted();
    EXPECT_THAT(rig.log.texts(), IsEmpty());
    EXPECT_EQ(rig.runLoop.timeToNextTask(), std::nullopt);
}

TEST_F(DeviceChange, AnUnreadableListCountsEveryTapAsLost) {
    for (const auto operation : {Operation::getPropertyDataSize, Operation::getPropertyData}) {
        rig.server.faults().add(
            {.operation = operation, .times = 1, .selector = kAudioHardwarePropertyDevices});
        rig.log.clear();
        rig.server.notify(kAudioObjectSystemObject, deviceListChange);
        runPosted();
        EXPECT_THAT(lines(),
                    ElementsAre("⚠️ Aggregate output device " + std::to_string(rig.speakers) +
                                " disappeared for PID 100\n"));
        rig.runLoop.advance(1s);
        EXPECT_THAT(rig.nextCycle(rig.speakers), Each(0.5F));
    }
}

TEST_F(DeviceChange, AnAggregateWhoseSubDevicesCannotBeReadIsJudgedByItself) {
    for (const auto operation : {Operation::getPropertyDataSize, Operation::getPropertyData}) {
        rig.server.faults().add({.operation = operation,
                                 .times = 1,
                                 .selector = kAudioAggregateDevicePropertyActiveSubDeviceList});
        rig.server.notify(kAudioObjectSystemObject, deviceListChange);
        runPosted();
        EXPECT_THAT(rig.log.texts(), IsEmpty());
    }
}

TEST_F(DeviceChange, WithoutTapsAChangedListLeadsToNothing) {
    rig.manager->removeAllTaps();
    runPosted();
    rig.log.clear();
    rig.server.removeDevice(headphones);
    runPosted();
    EXPECT_THAT(rig.log.texts(), IsEmpty());
    EXPECT_EQ(rig.runLoop.timeToNextTask(), std::nullopt);
}

TEST_F(DeviceChange, ADeviceChosenDuringADelayIsLostToThePass) {
    rig.addDevice("other");
    choose("headphones");
    rig.server.removeDevice(headphones);
    runPosted();
    ASSERT_TRUE(rig.manager->routeToDevice(pid, "other"));
    rig.runLoop.advance(500ms);
    EXPECT_EQ(rig.manager->getOutputDeviceUID(pid), std::nullopt);
    EXPECT_THAT(rig.nextCycle(rig.speakers), Each(0.5F));
}

TEST_F(DeviceChange, AChangeThatConcernsNoTapSaysAndSchedulesNothing) {
    rig.server.removeDevice(headphones);
    runPosted();
    EXPECT_THAT(rig.log.texts(), IsEmpty());
    EXPECT_EQ(rig.runLoop.timeToNextTask(), std::nullopt);
}

TEST_F(DeviceChange, AFailedReRouteIsTriedOnceMoreAfterOneAndAHalfSeconds) {
    choose("headphones");
    rig.server.removeDevice(headphones);
    runPosted();
    rig.server.failNext(Operation::createAggregateDevice, refusal, 2);
    rig.runLoop.advance(500ms);
    rig.log.clear();
    rig.runLoop.advance(1499ms);
    EXPECT_THAT(rig.log.texts(), IsEmpty());
    rig.runLoop.advance(1ms);
    EXPECT_THAT(lines(), ElementsAre("🔄 Retry re-routing PID 100 after device disconnect\n",
                                     "Routed PID 100 to device: default"));
    EXPECT_THAT(rig.nextCycle(rig.speakers), Each(0.5F));
}

TEST_F(DeviceChange, ThereIsNoThirdTry) {
    choose("headphones");
    rig.server.removeDevice(headphones);
    runPosted();
    rig.log.clear();
    rig.server.failNext(Operation::createAggregateDevice, refusal, 100);
    rig.runLoop.advance(1h);
    const std::string refused = "Audio device creation failed: -4321";
    EXPECT_THAT(
        lines(),
        ElementsAre("🔄 Re-routing PID 100 to default output after device disconnect\n", refused,
                    refused, "🔄 Retry re-routing PID 100 after device disconnect\n", refused,
                    refused, "❌ Re-route failed for PID 100 — tap may need manual re-tap\n"));
    EXPECT_TRUE(rig.manager->hasTap(pid));
}

TEST_F(DeviceChange, OnlyTheTapsThatFailedAreTriedAgain) {
    const auto other = rig.server.addProgram({.pid = 200, .name = "Other"});
    ASSERT_TRUE(rig.manager->createTap(200, other));
    ASSERT_TRUE(rig.manager->routeToDevice(200, "headphones"));
    choose("headphones");
    rig.server.removeDevice(headphones);
    runPosted();
    rig.log.clear();
    // Both builds of the first tap fail, those of the second do not.
    rig.server.failNext(Operation::createAggregateDevice, refusal, 2);
    rig.runLoop.advance(1h);
    EXPECT_THAT(lines(),
                ElementsAre("🔄 Re-routing PID 100 to default output after device disconnect\n",
                            "Audio device creation failed: -4321",
                            "Audio device creation failed: -4321",
                            "🔄 Re-routing PID 200 to default output after device disconnect\n",
                            "Routed PID 200 to device: default",
                            "🔄 Retry re-routing PID 100 after device disconnect\n",
                            "Routed PID 100 to device: default"));
}

TEST_F(DeviceChange, ATapRemovedDuringTheDelayIsPassedOver) {
    choose("headphones");
    rig.server.removeDevice(headphones);
    runPosted();
    rig.manager->removeTap(pid);
    rig.log.clear();
    rig.runLoop.advance(1h);
    EXPECT_THAT(lines(),
                ElementsAre("🔄 Re-routing PID 100 to default output after device disconnect\n",
                            "🔄 Retry re-routing PID 100 after device disconnect\n",
                            "❌ Re-route failed for PID 100 — tap may need manual re-tap\n"));
    EXPECT_FALSE(rig.manager->hasTap(pid));
}

TEST_F(DeviceChange, TwoPassesInFlightRebuildTwice) {
    choose("headphones");
    rig.server.removeDevice(headphones);
    runPosted();
    rig.runLoop.advance(100ms);
    rig.server.notify(kAudioObjectSystemObject, deviceListChange);
    rig.runLoop.advance(1h);
    EXPECT_EQ(builds(), 2U);
    EXPECT_THAT(rig.nextCycle(rig.speakers), Each(0.5F));
}

// ---- the default output moves

TEST_F(DeviceChange, ATapThatFollowsTheDefaultIsRebuiltThreeTenthsOfASecondLater) {
    rig.server.setDefaultOutput(headphones);
    rig.runLoop.advance(299ms);
    EXPECT_THAT(lines(), ElementsAre("🔊 Default output changed: speakers → headphones\n"));
    EXPECT_THAT(rig.nextCycle(headphones), Each(0.0F));
    rig.runLoop.advance(1ms);
    EXPECT_THAT(lines(), ElementsAre("🔊 Default output changed: speakers → headphones\n",
                                     "🔄 Rebuilding PID 100 for new default output headphones\n",
                                     "Routed PID 100 to device: default"));
    EXPECT_THAT(rig.nextCycle(headphones), Each(0.5F));
    EXPECT_THAT(rig.nextCycle(rig.speakers), Each(0.0F));
    EXPECT_EQ(rig.manager->getOutputDeviceUID(pid), std::nullopt);
}

TEST_F(DeviceChange, TwoNotificationsOfOneChangeAreOneRebuild) {
    rig.server.setDefaultOutput(headphones);
    rig.server.notify(kAudioObjectSystemObject, defaultChange);
    rig.runLoop.advance(1h);
    EXPECT_EQ(builds(), 1U);
    EXPECT_EQ(lines().size(), 3U);
}

TEST_F(DeviceChange, ATapWithAChosenDeviceDoesNotFollowTheDefault) {
    choose("speakers");
    rig.server.setDefaultOutput(headphones);
    rig.runLoop.advance(1h);
    EXPECT_THAT(lines(), ElementsAre("🔊 Default output changed: speakers → headphones\n"));
    EXPECT_EQ(builds(), 0U);
    EXPECT_THAT(rig.nextCycle(rig.speakers), Each(0.5F));
}

TEST_F(DeviceChange, AFailedRebuildIsNotTriedAgain) {
    rig.server.setDefaultOutput(headphones);
    rig.server.failNext(Operation::createAggregateDevice, refusal, 2);
    rig.runLoop.advance(1h);
    EXPECT_EQ(builds(), 2U) << "the build and its fallback";
    EXPECT_THAT(lines().back(), "Audio device creation failed: -4321");
}

TEST_F(DeviceChange, WithoutTapsTheDefaultIsFollowedInTheLogAlone) {
    rig.manager->removeAllTaps();
    rig.log.clear();
    rig.server.setDefaultOutput(headphones);
    runPosted();
    EXPECT_EQ(rig.runLoop.timeToNextTask(), std::nullopt);
    rig.server.setDefaultOutput(rig.speakers);
    runPosted();
    EXPECT_THAT(lines(), ElementsAre("🔊 Default output changed: speakers → headphones\n",
                                     "🔊 Default output changed: headphones → speakers\n"));
}

TEST_F(DeviceChange, ADefaultThatWasOrIsAbsentReadsNil) {
    rig.server.setDefaultOutput(kAudioObjectUnknown);
    rig.runLoop.advance(1s);
    rig.server.setDefaultOutput(headphones);
    rig.runLoop.advance(1s);
    const std::string none = "Could not get default output device UID";
    EXPECT_THAT(lines(), ElementsAre("🔊 Default output changed: speakers → nil\n",
                                     "🔄 Rebuilding PID 100 for new default output default\n", none,
                                     none, "🔊 Default output changed: nil → headphones\n",
                                     "🔄 Rebuilding PID 100 for new default output headphones\n",
                                     "Routed PID 100 to device: default"));
    EXPECT_THAT(rig.nextCycle(headphones), Each(0.5F));
}

TEST_F(DeviceChange, ADefaultThatStaysAbsentIsNoChange) {
    rig.server.setDefaultOutput(kAudioObjectUnknown);
    rig.runLoop.advance(1s);
    rig.log.clear();
    rig.server.notify(kAudioObjectSystemObject, defaultChange);
    rig.runLoop.advance(1h);
    EXPECT_THAT(rig.log.texts(), IsEmpty());
}

TEST_F(DeviceChange, TheWatchEndsBeforeTheFirstTapGoes) {
    rig.manager.reset();
    const std::vector<std::string> calls = rig.server.journal().operations();
    ASSERT_GE(calls.size(), 3U);
    EXPECT_EQ(calls[0], "AudioObjectRemovePropertyListener");
    EXPECT_EQ(calls[1], "AudioObjectRemovePropertyListener");
    EXPECT_EQ(calls[2], "AudioHardwareDestroyProcessTap");
}

TEST_F(DeviceChange, ADefaultWhoseUIDCannotBeReadCountsAsAbsent) {
    rig.server.faults().add({.operation = Operation::getPropertyData,
                             .times = 1,
                             .selector = kAudioDevicePropertyDeviceUID});
    rig.server.notify(kAudioObjectSystemObject, defaultChange);
    runPosted();
    EXPECT_THAT(lines(), ElementsAre("🔊 Default output changed: speakers → nil\n"));
}

TEST_F(DeviceChange, ADeviceThatIsBothLostAndTheDefaultIsFollowedAndReRouted) {
    rig.server.removeDevice(rig.speakers);
    rig.runLoop.advance(1h);
    EXPECT_THAT(lines(), testing::IsSupersetOf(
                             {"🔊 Default output changed: speakers → headphones\n",
                              "🔄 Rebuilding PID 100 for new default output headphones\n",
                              "🔄 Re-routing PID 100 to default output after device disconnect\n"}));
    EXPECT_THAT(rig.nextCycle(headphones), Each(0.5F));
}

// ---- the manager's end

TEST_F(DeviceChange, EveryPassThatFindsNoManagerDoesNothing) {
    const auto other = rig.server.addProgram({.pid = 200, .name = "Follows the default"});
    ASSERT_TRUE(rig.manager->createTap(200, other));
    choose("headphones");
    rig.server.removeDevice(headphones);
    rig.server.failNext(Operation::createAggregateDevice, refusal, 2);
    rig.runLoop.advance(500ms);
    rig.server.setDefaultOutput(kAudioObjectUnknown);
    runPosted();
    rig.server.removeDevice(rig.speakers);
    runPosted();
    EXPECT_EQ(rig.runLoop.timeToNextTask(), Seconds(0.3)) << "a rebuild, a re-route, a retry";
    rig.server.notify(kAudioObjectSystemObject, deviceListChange);
    rig.manager.reset();
    rig.forget();
    rig.runLoop.advance(1h);
    EXPECT_THAT(rig.log.texts(), IsEmpty());
    EXPECT_THAT(rig.server.journal().entries(), IsEmpty());
}

TEST_F(DeviceChange, AManagerMayEndOnOneThreadWhileItsWatchRunsOnAnother) {
    for (int round = 0; round < 50; ++round) {
        auto manager = std::make_unique<AudioTapManager>(rig.platformWith(rig.server));
        const auto program = rig.server.addProgram({.pid = 1000 + round, .name = "Program"});
        manager->createTap(1000 + round, program);
        std::thread mainThread([&] {
            for (int change = 0; change < 20; ++change) {
                rig.server.setDefaultOutput(change % 2 == 0 ? headphones : rig.speakers);
                rig.runLoop.advance(1s);
            }
        });
        manager.reset();
        mainThread.join();
    }
    EXPECT_EQ(rig.server.holdings().taps.size(), 1U) << "the rig's own";
}

} // namespace
} // namespace orvanta::test
