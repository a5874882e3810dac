#include "core/platform/AudioProperties.h"
#include "tests/platform/embedded/GainTap.h"
#include "tests/platform/embedded/ListenerLog.h"
#include "tests/platform/embedded/PropertyReads.h"

#include <gmock/gmock.h>

namespace orvanta::embedded {
namespace {

using test::GainTap;
using test::global;
using test::ListenerLog;
using testing::ElementsAre;

OSStatus doNothing(AudioObjectID, const AudioTimeStamp*, const AudioBufferList*,
                   const AudioTimeStamp*, AudioBufferList*, const AudioTimeStamp*, void*) {
    return noErr;
}

/// Taps, aggregates and IOProcs as things to make and take down.
class EmbeddedClients : public testing::Test {
protected:
    static AggregateDeviceDescription aggregateOn(const std::string& uid) {
        AggregateDeviceDescription description;
        description.uid = "aggregate";
        description.name = "Aggregate";
        description.subDevices = {uid};
        description.master = uid;
        return description;
    }

    AudioObjectID makeAggregate(const AggregateDeviceDescription& description) {
        AudioObjectID aggregate = kAudioObjectUnknown;
        EXPECT_EQ(server.createAggregateDevice(description, aggregate), noErr);
        return aggregate;
    }

    AudioObjectID makeTap() {
        AudioObjectID tap = kAudioObjectUnknown;
        EXPECT_EQ(server.createProcessTap(CATapDescription::stereoMixdownOfProcesses({music}), tap),
                  noErr);
        return tap;
    }

    EmbeddedAudioServer server;
    AudioObjectID speakers = server.addDevice({.uid = "speakers", .sampleRate = 44100});
    AudioObjectID music = server.addProgram({.pid = 100});
};

TEST_F(EmbeddedClients, ATapIsOfKnownProcessesOnly) {
    AudioObjectID tap = 55;
    const auto stranger = CATapDescription::stereoMixdownOfProcesses({music, 777});
    EXPECT_EQ(server.createProcessTap(stranger, tap), kAudioHardwareBadObjectError);
    EXPECT_EQ(tap, 55U);

    const auto nobody = CATapDescription::stereoMixdownOfProcesses({});
    EXPECT_EQ(server.createProcessTap(nobody, tap), noErr);
    EXPECT_EQ(server.createProcessTap(nobody, tap), kAudioHardwareIllegalOperationError);
}

TEST_F(EmbeddedClients, ATapIsDestroyedOnce) {
    const auto tap = makeTap();
    EXPECT_THAT(server.holdings().taps, ElementsAre(tap));
    EXPECT_EQ(server.destroyProcessTap(tap), noErr);
    EXPECT_EQ(server.destroyProcessTap(tap), kAudioHardwareBadObjectError);
    EXPECT_EQ(server.destroyProcessTap(speakers), kAudioHardwareBadObjectError);
    EXPECT_THAT(server.holdings().taps, testing::IsEmpty());
}

TEST_F(EmbeddedClients, AnAggregateTellsWhatItIs) {
    auto description = aggregateOn("speakers");
    description.taps = {"some tap"};
    const auto aggregate = makeAggregate(description);

    EXPECT_EQ(readString(server, aggregate, global(kAudioDevicePropertyDeviceUID)), "aggregate");
    EXPECT_EQ(readString(server, aggregate, global(kAudioObjectPropertyName)), "Aggregate");
    EXPECT_EQ(readUInt32(server, aggregate, global(kAudioDevicePropertyTransportType)),
              kAudioDeviceTransportTypeAggregate);
    EXPECT_EQ(readFloat64(server, aggregate, global(kAudioDevicePropertyNominalSampleRate)), 44100);
    EXPECT_EQ(test::sizeOf(server, aggregate, test::streams(kAudioObjectPropertyScopeInput)).size,
              4U);
    EXPECT_EQ(test::sizeOf(server, aggregate, test::streams(kAudioObjectPropertyScopeOutput)).size,
              4U);
    EXPECT_FALSE(server.hasProperty(aggregate, test::outputVolume(0)));
    EXPECT_THAT(readObjectList(server, aggregate,
                               {kAudioAggregateDevicePropertyActiveSubDeviceList,
                                kAudioObjectPropertyScopeOutput, kAudioObjectPropertyElementMain}),
                ElementsAre(speakers));
    EXPECT_THAT(deviceList(server), ElementsAre(speakers, aggregate));
    EXPECT_EQ(findDeviceID(server, "aggregate"), aggregate);
}

TEST_F(EmbeddedClients, AnAggregatesRateIsAFigureThatCanBeSet) {
    EmbeddedAudioServer other({.aggregateSampleRate = 48000});
    const auto device = other.addDevice({.uid = "speakers", .sampleRate = 44100});
    AudioObjectID aggregate = 0;
    ASSERT_EQ(other.createAggregateDevice(aggregateOn("speakers"), aggregate), noErr);
    const auto rate = global(kAudioDevicePropertyNominalSampleRate);

    EXPECT_EQ(readFloat64(other, aggregate, rate), 48000);
    EXPECT_EQ(test::write(other, aggregate, rate, 44100.0), noErr);
    EXPECT_EQ(readFloat64(other, aggregate, rate), 44100);
    EXPECT_EQ(readFloat64(other, device, rate), 44100);
}

TEST_F(EmbeddedClients, AnAggregatesRateMayBeFixed) {
    EmbeddedAudioServer other({.aggregateSampleRateSettable = false});
    other.addDevice({.uid = "speakers"});
    AudioObjectID aggregate = 0;
    ASSERT_EQ(other.createAggregateDevice(aggregateOn("speakers"), aggregate), noErr);
    EXPECT_EQ(test::write(other, aggregate, global(kAudioDevicePropertyNominalSampleRate), 1.0),
              kAudioHardwareIllegalOperationError);
}

TEST_F(EmbeddedClients, AnAggregateOnAnUnknownDeviceIsRefusedUnlessTheServerTakesIt) {
    AudioObjectID aggregate = 55;
    EXPECT_EQ(server.createAggregateDevice(aggregateOn("nowhere"), aggregate),
              kAudioHardwareBadDeviceError);
    EXPECT_EQ(aggregate, 55U);

    EmbeddedAudioServer other({.refusesUnknownSubDevices = false});
    EXPECT_EQ(other.createAggregateDevice(aggregateOn("nowhere"), aggregate), noErr);
    EXPECT_THAT(other.holdings().aggregates, ElementsAre(aggregate));
    EXPECT_THAT(deviceList(other), testing::IsEmpty());
}

TEST_F(EmbeddedClients, AnAggregateWithAnUnknownTapIsTakenUnlessTheServerRefusesIt) {
    auto description = aggregateOn("speakers");
    description.taps = {"no such tap"};
    EmbeddedAudioServer strict({.refusesUnknownTaps = true});
    strict.addDevice({.uid = "speakers"});
    AudioObjectID aggregate = 0;
    EXPECT_EQ(strict.createAggregateDevice(description, aggregate), kAudioHardwareBadObjectError);
    EXPECT_EQ(server.createAggregateDevice(description, aggregate), noErr);
}

TEST_F(EmbeddedClients, UidsAreTakenOnce) {
    makeAggregate(aggregateOn("speakers"));
    AudioObjectID aggregate = 0;
    EXPECT_EQ(server.createAggregateDevice(aggregateOn("speakers"), aggregate),
              kAudioHardwareIllegalOperationError);
    auto description = aggregateOn("speakers");
    description.uid = "speakers";
    EXPECT_EQ(server.createAggregateDevice(description, aggregate),
              kAudioHardwareIllegalOperationError);
    description.uid = "";
    EXPECT_EQ(server.createAggregateDevice(description, aggregate),
              kAudioHardwareIllegalOperationError);
}

TEST_F(EmbeddedClients, ComingAndGoingOfAnAggregateChangesTheDeviceList) {
    ListenerLog listener;
    listener.listen(server, kAudioObjectSystemObject, global(kAudioHardwarePropertyDevices));

    const auto aggregate = makeAggregate(aggregateOn("speakers"));
    EXPECT_THAT(listener.heard(), ElementsAre("1 dev#"));
    EXPECT_EQ(server.destroyAggregateDevice(aggregate), noErr);
    EXPECT_THAT(listener.heard(), ElementsAre("1 dev#"));
    EXPECT_EQ(server.destroyAggregateDevice(aggregate), kAudioHardwareBadObjectError);
    EXPECT_EQ(server.destroyAggregateDevice(speakers), kAudioHardwareBadDeviceError);
}

TEST_F(EmbeddedClients, IOProcsAreOnDevicesOnly) {
    AudioDeviceIOProcID proc = nullptr;
    EXPECT_EQ(server.createIOProcID(777, {doNothing, nullptr}, proc), kAudioHardwareBadObjectError);
    EXPECT_EQ(server.createIOProcID(music, {doNothing, nullptr}, proc),
              kAudioHardwareBadDeviceError);
    EXPECT_EQ(server.createIOProcID(speakers, {}, proc), kAudioHardwareIllegalOperationError);
    EXPECT_EQ(proc, nullptr);
    EXPECT_EQ(server.startDevice(777, proc), kAudioHardwareBadObjectError);
    EXPECT_EQ(server.startDevice(music, proc), kAudioHardwareBadDeviceError);
    EXPECT_EQ(server.startDevice(speakers, nullptr), kAudioHardwareIllegalOperationError);
    EXPECT_EQ(server.stopDevice(speakers, nullptr), kAudioHardwareIllegalOperationError);
}

TEST_F(EmbeddedClients, AnIOProcBelongsToItsDevice) {
    const auto aggregate = makeAggregate(aggregateOn("speakers"));
    AudioDeviceIOProcID first = nullptr;
    AudioDeviceIOProcID second = nullptr;
    ASSERT_EQ(server.createIOProcID(speakers, {doNothing, nullptr}, first), noErr);
    ASSERT_EQ(server.createIOProcID(aggregate, {doNothing, nullptr}, second), noErr);
    EXPECT_NE(first, second);
    EXPECT_EQ(server.startDevice(aggregate, first), kAudioHardwareIllegalOperationError);
    EXPECT_EQ(server.destroyIOProcID(speakers, second), kAudioHardwareIllegalOperationError);
    EXPECT_EQ(server.destroyIOProcID(speakers, first), noErr);
    EXPECT_EQ(server.destroyIOProcID(speakers, first), kAudioHardwareIllegalOperationError);
}

TEST_F(EmbeddedClients, StartingAndStoppingTwiceChangesNothing) {
    AudioDeviceIOProcID proc = nullptr;
    server.createIOProcID(speakers, {doNothing, nullptr}, proc);
    EXPECT_EQ(server.stopDevice(speakers, proc), noErr);
    EXPECT_EQ(server.startDevice(speakers, proc), noErr);
    EXPECT_EQ(server.startDevice(speakers, proc), noErr);
    EXPECT_EQ(server.holdings().startedIOProcs, 1U);
    EXPECT_EQ(server.stopDevice(speakers, proc), noErr);
    EXPECT_EQ(server.stopDevice(speakers, proc), noErr);
    EXPECT_EQ(server.holdings().startedIOProcs, 0U);
}

TEST_F(EmbeddedClients, HoldingsShowWhatWasNotTakenDown) {
    ListenerLog listener;
    {
        GainTap tap(server, {music}, "speakers");
        tap.start();
        listener.listen(server, kAudioObjectSystemObject, global(kAudioHardwarePropertyDevices));
        const auto holdings = server.holdings();
        EXPECT_THAT(holdings.taps, ElementsAre(tap.tap()));
        EXPECT_THAT(holdings.aggregates, ElementsAre(tap.aggregate()));
        EXPECT_EQ(holdings.ioProcs, 1U);
        EXPECT_EQ(holdings.startedIOProcs, 1U);
        EXPECT_EQ(holdings.listeners, 1U);
    }
    listener.stopListening(server, kAudioObjectSystemObject, global(kAudioHardwarePropertyDevices));
    EXPECT_EQ(server.holdings(), EmbeddedAudioServer::Holdings{});
}

TEST_F(EmbeddedClients, DestroyingARunningIOProcOrAggregateEndsItsCycles) {
    GainTap first(server, {music}, "speakers");
    GainTap second(server, {music}, "speakers");
    first.start();
    second.start();
    server.step(speakers);
    server.destroyIOProcID(first.aggregate(), first.proc());
    server.destroyAggregateDevice(second.aggregate());
    server.step(speakers);
    EXPECT_EQ(first.calls(), 1U);
    EXPECT_EQ(second.calls(), 1U);
}

TEST_F(EmbeddedClients, AnAggregateMayBeBuiltAnewOnTheSameTap) {
    const auto headphones = server.addDevice({.uid = "headphones"});
    server.setSource(music, constant(0.5F));
    GainTap tap(server, {music}, "speakers");
    tap.start();
    server.stepAll();
    tap.dismantle();
    tap.build("headphones");
    tap.start();
    server.clearPlayed(speakers);
    server.clearPlayed(headphones);

    server.stepAll();

    EXPECT_THAT(server.played(speakers), testing::Each(0.0F));
    EXPECT_THAT(server.played(headphones), testing::Each(0.5F));
}

} // namespace
} // namespace orvanta::embedded
