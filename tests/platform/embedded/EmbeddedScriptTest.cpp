#include "core/platform/AudioProperties.h"
#include "tests/platform/embedded/GainTap.h"
#include "tests/platform/embedded/PropertyReads.h"

#include <gmock/gmock.h>

#include <bit>

namespace orvanta::embedded {
namespace {

using test::GainTap;
using test::global;
using test::outputVolume;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class EmbeddedFaults : public testing::Test {
protected:
    EmbeddedAudioServer server;
    AudioObjectID speakers = server.addDevice({.uid = "speakers", .name = "Speakers"});
    AudioObjectID headphones = server.addDevice({.uid = "headphones"});
    AudioObjectID music = server.addProgram({.pid = 100});
};

TEST_F(EmbeddedFaults, TheNextCallsFailWithTheGivenStatusAndDoNothing) {
    server.failNext(Operation::createProcessTap, -50, 2);
    const auto description = CATapDescription::stereoMixdownOfProcesses({music});
    AudioObjectID tap = 55;

    EXPECT_EQ(server.createProcessTap(description, tap), -50);
    EXPECT_EQ(server.createProcessTap(description, tap), -50);
    EXPECT_EQ(tap, 55U);
    EXPECT_THAT(server.holdings().taps, IsEmpty());
    EXPECT_EQ(server.createProcessTap(description, tap), noErr);
}

TEST_F(EmbeddedFaults, OneWithoutACountHoldsUntilItIsRemoved) {
    const auto fault = server.faults().add({.operation = Operation::getPropertyDataSize});
    const auto devices = global(kAudioHardwarePropertyDevices);
    for (int call = 0; call < 3; ++call)
        EXPECT_THAT(deviceList(server), IsEmpty());
    server.faults().remove(fault);
    EXPECT_THAT(deviceList(server), SizeIs(2));
    server.faults().add({.operation = Operation::getPropertyDataSize});
    server.faults().clear();
    EXPECT_EQ(test::sizeOf(server, kAudioObjectSystemObject, devices).status, noErr);
}

TEST_F(EmbeddedFaults, AreGoneOnceTheyHaveStruckAllTheirTimes) {
    server.failNext(Operation::getPropertyDataSize, -50, 2);
    server.failNext(Operation::getPropertyDataSize, -50, 0);
    EXPECT_EQ(server.faults().count(), 1U);
    EXPECT_THAT(deviceList(server), IsEmpty());
    EXPECT_EQ(server.faults().count(), 1U);
    EXPECT_THAT(deviceList(server), IsEmpty());
    EXPECT_EQ(server.faults().count(), 0U);
    EXPECT_THAT(deviceList(server), SizeIs(2));
}

TEST_F(EmbeddedFaults, StrikeOnlyTheObjectAndAddressTheyName) {
    server.faults().add({.operation = Operation::getPropertyData,
                         .status = kAudioHardwareNotRunningError,
                         .object = speakers,
                         .selector = kAudioDevicePropertyDeviceUID});
    server.faults().add({.operation = Operation::isPropertySettable,
                         .scope = kAudioObjectPropertyScopeOutput,
                         .element = 1});
    std::optional<std::string> text;
    const auto uid = global(kAudioDevicePropertyDeviceUID);

    EXPECT_EQ(server.getStringProperty(speakers, uid, text), kAudioHardwareNotRunningError);
    EXPECT_EQ(server.getStringProperty(headphones, uid, text), noErr);
    EXPECT_EQ(server.getStringProperty(speakers, global(kAudioObjectPropertyName), text), noErr);
    bool settable = false;
    EXPECT_EQ(server.isPropertySettable(speakers, outputVolume(0), settable), noErr);
    EXPECT_EQ(server.isPropertySettable(speakers, outputVolume(1), settable),
              kAudioHardwareUnspecifiedError);
}

TEST_F(EmbeddedFaults, MayLetCallsPassFirst) {
    server.faults().add({.operation = Operation::getPropertyData, .times = 1, .skip = 1});
    const auto rate = global(kAudioDevicePropertyNominalSampleRate);
    EXPECT_TRUE(readFloat64(server, speakers, rate));
    EXPECT_FALSE(readFloat64(server, speakers, rate));
    EXPECT_TRUE(readFloat64(server, speakers, rate));
}

TEST_F(EmbeddedFaults, MayGiveANullStringWithSuccess) {
    server.faults().add(
        {.operation = Operation::getPropertyData, .effect = FaultEffect::nullString, .times = 1});
    std::optional<std::string> text = "before";
    EXPECT_EQ(server.getStringProperty(speakers, global(kAudioObjectPropertyName), text), noErr);
    EXPECT_FALSE(text);
}

TEST_F(EmbeddedFaults, MayGiveANullIOProcWithSuccess) {
    server.faults().add(
        {.operation = Operation::createIOProcID, .effect = FaultEffect::nullProcID, .times = 1});
    auto* proc = std::bit_cast<AudioDeviceIOProcID>(std::uintptr_t{16});
    const auto nothing = [](AudioObjectID, const AudioTimeStamp*, const AudioBufferList*,
                            const AudioTimeStamp*, AudioBufferList*, const AudioTimeStamp*,
                            void*) -> OSStatus {
        return noErr;
    };
    EXPECT_EQ(server.createIOProcID(speakers, {nothing, nullptr}, proc), noErr);
    EXPECT_EQ(proc, nullptr);
    EXPECT_EQ(server.holdings().ioProcs, 0U);
}

TEST_F(EmbeddedFaults, MayGiveTooFewBytesWithSuccess) {
    const auto devices = global(kAudioHardwarePropertyDevices);
    server.faults().add({.operation = Operation::getPropertyDataSize,
                         .effect = FaultEffect::givesBytes,
                         .bytes = 0,
                         .times = 1});
    server.faults().add({.operation = Operation::getPropertyData,
                         .effect = FaultEffect::givesBytes,
                         .bytes = 4,
                         .times = 1});
    EXPECT_EQ(test::sizeOf(server, kAudioObjectSystemObject, devices).size, 0U);
    EXPECT_THAT(deviceList(server), ElementsAre(speakers));
    EXPECT_THAT(deviceList(server), ElementsAre(speakers, headphones));
}

TEST_F(EmbeddedFaults, EveryOperationCanFail) {
    const auto any = global(kAudioObjectPropertyName);
    const auto listener = [](AudioObjectID, const AudioObjectPropertyAddress&, void*) -> OSStatus {
        return noErr;
    };
    for (auto operation = Operation::hasProperty; operation <= Operation::stopDevice;
         operation = static_cast<Operation>(static_cast<int>(operation) + 1))
        server.faults().add({.operation = operation, .status = -1});
    bool settable = false;
    std::uint32_t size = 8;
    char data[8] = {};
    AudioObjectID object = 0;
    AudioDeviceIOProcID proc = nullptr;

    EXPECT_FALSE(server.hasProperty(speakers, any));
    EXPECT_EQ(server.isPropertySettable(speakers, any, settable), -1);
    EXPECT_EQ(server.getPropertyDataSize(speakers, any, size), -1);
    EXPECT_EQ(server.getPropertyData(speakers, any, size, data), -1);
    EXPECT_EQ(server.setPropertyData(speakers, any, size, data), -1);
    EXPECT_EQ(server.addPropertyListener(speakers, any, listener, nullptr), -1);
    EXPECT_EQ(server.removePropertyListener(speakers, any, listener, nullptr), -1);
    EXPECT_EQ(server.createProcessTap(CATapDescription::stereoMixdownOfProcesses({}), object), -1);
    EXPECT_EQ(server.destroyProcessTap(1), -1);
    EXPECT_EQ(server.createAggregateDevice({}, object), -1);
    EXPECT_EQ(server.destroyAggregateDevice(1), -1);
    EXPECT_EQ(server.createIOProcID(speakers, {}, proc), -1);
    EXPECT_EQ(server.destroyIOProcID(speakers, proc), -1);
    EXPECT_EQ(server.startDevice(speakers, proc), -1);
    EXPECT_EQ(server.stopDevice(speakers, proc), -1);
}

TEST_F(EmbeddedFaults, AFailedDestructionLeavesTheObject) {
    GainTap tap(server, {music}, "speakers");
    server.failNext(Operation::destroyProcessTap);
    EXPECT_NE(server.destroyProcessTap(tap.tap()), noErr);
    EXPECT_THAT(server.holdings().taps, ElementsAre(tap.tap()));
}

class EmbeddedJournal : public EmbeddedFaults {};

TEST_F(EmbeddedJournal, KeepsTheLifeOfATapInOrder) {
    {
        GainTap tap(server, {music}, "speakers");
        readFloat64(server, tap.aggregate(), global(kAudioDevicePropertyNominalSampleRate));
        tap.start();
        tap.stop();
    }
    EXPECT_THAT(server.journal().operations(Journal::lifecycle()),
                ElementsAre("AudioHardwareCreateProcessTap", "AudioHardwareCreateAggregateDevice",
                            "AudioDeviceCreateIOProcID", "AudioDeviceStart", "AudioDeviceStop",
                            "AudioDeviceDestroyIOProcID", "AudioHardwareDestroyAggregateDevice",
                            "AudioHardwareDestroyProcessTap"));
    EXPECT_EQ(server.journal().count(Operation::getPropertyData), 1U);
}

TEST_F(EmbeddedJournal, SaysInOneLineWhatHappened) {
    const float volume = 0.5F;
    server.setPropertyData(speakers, outputVolume(0), sizeof volume, &volume);
    test::readStatus(server, 777, global(kAudioObjectPropertyName));
    readUInt32(server, speakers, global(kAudioDevicePropertyTransportType));
    server.failNext(Operation::destroyProcessTap, -50);
    server.destroyProcessTap(12);
    server.stopDevice(speakers, nullptr);

    EXPECT_THAT(server.journal().lines(),
                ElementsAre("AudioObjectSetPropertyData 2 'volm' 'outp' 0 = 0.5, 4 bytes -> noErr",
                            "AudioObjectGetPropertyData 777 'lnam' 'glob' 0 -> '!obj'",
                            "AudioObjectGetPropertyData 2 'tran' 'glob' 0, 4 bytes -> noErr",
                            "AudioHardwareDestroyProcessTap 12 -> -50",
                            "AudioDeviceStop 2 -> 'nope'"));
}

TEST_F(EmbeddedJournal, TellsWhatWasAskedForAndWhatCameOfIt) {
    GainTap tap(server, {music}, "speakers");
    const auto entries = server.journal().entries(Journal::lifecycle());
    ASSERT_THAT(entries, SizeIs(3));
    EXPECT_EQ(entries[0].created, tap.tap());
    EXPECT_EQ(entries[0].tap->muteBehavior(), CATapMuted);
    EXPECT_EQ(entries[1].created, tap.aggregate());
    EXPECT_THAT(entries[1].aggregate->taps, ElementsAre(entries[0].tap->UUID()));
    EXPECT_EQ(entries[2].object, tap.aggregate());
    EXPECT_EQ(entries[2].procID, tap.proc());
    EXPECT_EQ(entries[1].text(), "AudioHardwareCreateAggregateDevice \"Gain\" on speakers -> "
                                 "noErr " +
                                     std::to_string(tap.aggregate()));
}

TEST_F(EmbeddedJournal, CanBeClearedAndFiltered) {
    server.hasProperty(speakers, global(kAudioObjectPropertyName));
    server.hasProperty(headphones, global(kAudioObjectPropertyName));
    EXPECT_THAT(server.journal().entries(Journal::about(headphones)), SizeIs(1));
    server.journal().clear();
    EXPECT_THAT(server.journal().entries(), IsEmpty());
}

TEST(EmbeddedJournalLimit, DropsTheOldest) {
    EmbeddedAudioServer server({.journalLimit = 2});
    for (const AudioObjectID tap : {5U, 6U, 7U})
        server.destroyProcessTap(tap);
    const auto entries = server.journal().entries();
    ASSERT_THAT(entries, SizeIs(2));
    EXPECT_EQ(entries[0].object, 6U);
}

} // namespace
} // namespace orvanta::embedded
