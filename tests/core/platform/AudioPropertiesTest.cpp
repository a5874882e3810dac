#include "core/platform/AudioProperties.h"

#include "platform/embedded/EmbeddedAudioServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta {
namespace {

using embedded::FaultEffect;
using embedded::Operation;
using testing::ElementsAre;

class AudioProperties : public testing::Test {
protected:
    EmbeddedAudioServer server;
    AudioObjectID first = server.addDevice({.uid = "a", .name = "A", .sampleRate = 44100});
    AudioObjectID second = server.addDevice({.uid = "b", .name = "B"});
};

TEST_F(AudioProperties, AreReadByType) {
    EXPECT_EQ(readFloat64(server, first, {kAudioDevicePropertyNominalSampleRate}), 44100.0);
    EXPECT_EQ(readString(server, first, {kAudioDevicePropertyDeviceUID}), "a");
    EXPECT_EQ(readUInt32(server, first, {kAudioDevicePropertyTransportType}),
              kAudioDeviceTransportTypeBuiltIn);
    EXPECT_EQ(readFloat32(server, first,
                          {kAudioDevicePropertyVolumeScalar, kAudioObjectPropertyScopeOutput}),
              1.0F);
    const auto program = server.addProgram({.pid = 42});
    EXPECT_EQ(readInt32(server, program, {kAudioProcessPropertyPID}), 42);
}

TEST_F(AudioProperties, AreAbsentWhenTheAudioSystemRefuses) {
    EXPECT_EQ(readFloat64(server, 999, {kAudioDevicePropertyNominalSampleRate}), std::nullopt);
    EXPECT_EQ(readString(server, first, {kAudioTapPropertyFormat}), std::nullopt);
    EXPECT_EQ(readTapFormat(server, first), std::nullopt);
}

TEST_F(AudioProperties, AreAbsentWhenTooFewBytesCome) {
    server.faults().add({.operation = Operation::getPropertyData,
                         .effect = FaultEffect::givesBytes,
                         .bytes = 4,
                         .selector = kAudioDevicePropertyNominalSampleRate});
    EXPECT_EQ(readFloat64(server, first, {kAudioDevicePropertyNominalSampleRate}), std::nullopt);
}

TEST_F(AudioProperties, ANullStringReadsAsAbsent) {
    server.faults().add({.operation = Operation::getPropertyData,
                         .effect = FaultEffect::nullString,
                         .selector = kAudioObjectPropertyName});
    EXPECT_EQ(readString(server, first, {kAudioObjectPropertyName}), std::nullopt);
}

TEST_F(AudioProperties, DevicesAreListedInTheSystemsOrder) {
    EXPECT_THAT(deviceList(server), ElementsAre(first, second));
}

TEST_F(AudioProperties, AListThatShrinksBetweenTheTwoCallsHoldsOnlyWhatCame) {
    server.faults().add({.operation = Operation::getPropertyData,
                         .effect = FaultEffect::givesBytes,
                         .bytes = 4,
                         .selector = kAudioHardwarePropertyDevices});
    EXPECT_THAT(deviceList(server), ElementsAre(first));
}

TEST_F(AudioProperties, AListThatGrowsBetweenTheTwoCallsIsReadWhole) {
    server.faults().add({.operation = Operation::getPropertyDataSize,
                         .effect = FaultEffect::givesBytes,
                         .bytes = 4,
                         .selector = kAudioHardwarePropertyDevices});
    EXPECT_THAT(deviceList(server), ElementsAre(first, second));
}

TEST_F(AudioProperties, ADeviceIsFoundByItsExactUID) {
    EXPECT_EQ(findDeviceID(server, "b"), second);
    EXPECT_EQ(findDeviceID(server, "B"), kAudioObjectUnknown);
    EXPECT_EQ(findDeviceID(server, ""), kAudioObjectUnknown);
}

TEST_F(AudioProperties, ADeviceWhoseUIDCannotBeReadIsPassedOver) {
    server.faults().add({.operation = Operation::getPropertyData,
                         .object = first,
                         .selector = kAudioDevicePropertyDeviceUID});
    EXPECT_EQ(findDeviceID(server, "b"), second);
    EXPECT_EQ(findDeviceID(server, "a"), kAudioObjectUnknown);
}

} // namespace
} // namespace orvanta
