#include "core/platform/AudioProperties.h"
#include "tests/platform/embedded/GainTap.h"
#include "tests/platform/embedded/PropertyReads.h"

#include <gmock/gmock.h>

namespace orvanta::embedded {
namespace {

using test::GainTap;
using test::global;
using test::outputVolume;
using test::readStatus;
using test::streams;
using testing::ElementsAre;
using testing::IsEmpty;

class EmbeddedProperties : public testing::Test {
protected:
    EmbeddedAudioServer server;
    AudioObjectID speakers = server.addDevice({.uid = "speakers",
                                               .name = "Speakers",
                                               .transport = kAudioDeviceTransportTypeUSB,
                                               .sampleRate = 44100});
    AudioObjectID music = server.addProgram({.pid = 100});
};

TEST_F(EmbeddedProperties, TheSystemListsDevicesAndProcessesInTheOrderOfTheirComing) {
    const auto headphones = server.addDevice({.uid = "headphones"});
    const auto player = server.addProgram({.pid = 101});

    EXPECT_THAT(deviceList(server), ElementsAre(speakers, headphones));
    EXPECT_THAT(readObjectList(server, kAudioObjectSystemObject,
                               global(kAudioHardwarePropertyProcessObjectList)),
                ElementsAre(music, player));
}

TEST_F(EmbeddedProperties, TheFirstDeviceThatPlaysIsTheDefaultOutput) {
    EXPECT_EQ(readUInt32(server, kAudioObjectSystemObject,
                         global(kAudioHardwarePropertyDefaultOutputDevice)),
              speakers);
}

TEST_F(EmbeddedProperties, WithoutADeviceTheDefaultOutputIsZero) {
    EmbeddedAudioServer empty;
    empty.addDevice({.uid = "microphone", .channels = 0, .inputStreams = 1});

    EXPECT_EQ(readUInt32(empty, kAudioObjectSystemObject,
                         global(kAudioHardwarePropertyDefaultOutputDevice)),
              0U);
}

TEST_F(EmbeddedProperties, ADeviceTellsWhatItIs) {
    EXPECT_EQ(readString(server, speakers, global(kAudioDevicePropertyDeviceUID)), "speakers");
    EXPECT_EQ(readString(server, speakers, global(kAudioObjectPropertyName)), "Speakers");
    EXPECT_EQ(readUInt32(server, speakers, global(kAudioDevicePropertyTransportType)),
              kAudioDeviceTransportTypeUSB);
    EXPECT_EQ(readFloat64(server, speakers, global(kAudioDevicePropertyNominalSampleRate)), 44100);
}

TEST_F(EmbeddedProperties, NonsenseInDeviceSettingsIsPutRight) {
    const auto device = server.addDevice({.sampleRate = -1, .framesPerCycle = 0});

    const auto uid = "device-" + std::to_string(device);
    EXPECT_EQ(readString(server, device, global(kAudioDevicePropertyDeviceUID)), uid);
    EXPECT_EQ(readString(server, device, global(kAudioObjectPropertyName)), uid);
    EXPECT_EQ(readFloat64(server, device, global(kAudioDevicePropertyNominalSampleRate)), 48000);
    server.step(device);
    EXPECT_EQ(server.played(device).size(), 2U);
}

TEST_F(EmbeddedProperties, AProcessTellsItsPidAndWhetherItPlays) {
    EXPECT_EQ(readInt32(server, music, global(kAudioProcessPropertyPID)), 100);
    EXPECT_EQ(readUInt32(server, music, global(kAudioProcessPropertyIsRunningOutput)), 1U);
    EXPECT_EQ(readUInt32(server, music, global(kAudioProcessPropertyIsRunning)), 1U);

    server.pauseProgram(music);
    EXPECT_EQ(readUInt32(server, music, global(kAudioProcessPropertyIsRunningOutput)), 0U);
    EXPECT_EQ(readUInt32(server, music, global(kAudioProcessPropertyIsRunning)), 0U);

    server.setRecording(music, true);
    EXPECT_EQ(readUInt32(server, music, global(kAudioProcessPropertyIsRunningOutput)), 0U);
    EXPECT_EQ(readUInt32(server, music, global(kAudioProcessPropertyIsRunning)), 1U);
}

TEST_F(EmbeddedProperties, TwoProgramsOfOnePidAreOneProcessWithTwoObjects) {
    const auto second = server.addProgram({.pid = 100});
    EXPECT_NE(second, music);
    EXPECT_EQ(readInt32(server, second, global(kAudioProcessPropertyPID)), 100);
    EXPECT_THAT(readObjectList(server, kAudioObjectSystemObject,
                               global(kAudioHardwarePropertyProcessObjectList)),
                ElementsAre(music, second));
}

TEST_F(EmbeddedProperties, StreamsAreCountedByScope) {
    const auto device = server.addDevice(
        {.uid = "interface", .channels = 4, .layout = BufferLayout::planar, .inputStreams = 2});

    EXPECT_EQ(test::sizeOf(server, device, streams(kAudioObjectPropertyScopeOutput)).size, 16U);
    EXPECT_EQ(test::sizeOf(server, device, streams(kAudioObjectPropertyScopeInput)).size, 8U);
    EXPECT_EQ(test::sizeOf(server, device, streams(kAudioObjectPropertyScopeGlobal)).size, 24U);
    EXPECT_EQ(test::sizeOf(server, speakers, streams(kAudioObjectPropertyScopeOutput)).size, 4U);
    EXPECT_EQ(test::sizeOf(server, speakers, streams(kAudioObjectPropertyScopeInput)).size, 0U);
}

TEST_F(EmbeddedProperties, ADeviceHasTheVolumeElementsOfItsSettings) {
    const auto device = server.addDevice(
        {.uid = "amplifier",
         .volumes = {{.element = 1, .scalar = 0.25F}, {.element = 2, .settable = false}}});

    EXPECT_FALSE(server.hasProperty(device, outputVolume(0)));
    EXPECT_EQ(readFloat32(server, device, outputVolume(1)), 0.25F);
    bool settable = false;
    EXPECT_EQ(server.isPropertySettable(device, outputVolume(1), settable), noErr);
    EXPECT_TRUE(settable);
    EXPECT_EQ(server.isPropertySettable(device, outputVolume(2), settable), noErr);
    EXPECT_FALSE(settable);
    EXPECT_EQ(server.isPropertySettable(device, outputVolume(0), settable),
              kAudioHardwareUnknownPropertyError);
    EXPECT_EQ(test::write(server, device, outputVolume(2), 0.5F),
              kAudioHardwareIllegalOperationError);
}

TEST_F(EmbeddedProperties, AVolumeIsClampedAndNeverNotANumber) {
    EXPECT_EQ(test::write(server, speakers, outputVolume(0), 1.5F), noErr);
    EXPECT_EQ(readFloat32(server, speakers, outputVolume(0)), 1.0F);
    EXPECT_EQ(test::write(server, speakers, outputVolume(0), -1.0F), noErr);
    EXPECT_EQ(readFloat32(server, speakers, outputVolume(0)), 0.0F);
    EXPECT_EQ(test::write(server, speakers, outputVolume(0), std::nanf("")),
              kAudioHardwareIllegalOperationError);
}

TEST_F(EmbeddedProperties, TheSampleRateIsSetWhereTheDeviceAllowsIt) {
    const auto device = server.addDevice(
        {.uid = "dac", .sampleRateSettable = true, .sampleRates = {44100, 48000, 96000}});
    const auto rate = global(kAudioDevicePropertyNominalSampleRate);

    EXPECT_EQ(test::write(server, device, rate, 96000.0), noErr);
    EXPECT_EQ(readFloat64(server, device, rate), 96000);
    EXPECT_EQ(test::write(server, device, rate, 12345.0), kAudioHardwareIllegalOperationError);
    EXPECT_EQ(test::write(server, speakers, rate, 48000.0), kAudioHardwareIllegalOperationError);
    EXPECT_EQ(readFloat64(server, speakers, rate), 44100);
}

TEST_F(EmbeddedProperties, UnknownObjectsAndPropertiesAreToldApart) {
    const AudioObjectID nobody = 9999;
    std::uint32_t size = 77;
    std::optional<std::string> text = "kept";

    EXPECT_EQ(readStatus(server, nobody, global(kAudioObjectPropertyName)),
              kAudioHardwareBadObjectError);
    EXPECT_EQ(server.getPropertyDataSize(nobody, global(kAudioObjectPropertyName), size),
              kAudioHardwareBadObjectError);
    EXPECT_EQ(server.getPropertyDataSize(music, global(kAudioObjectPropertyName), size),
              kAudioHardwareUnknownPropertyError);
    EXPECT_EQ(server.getStringProperty(music, global(kAudioObjectPropertyName), text),
              kAudioHardwareUnknownPropertyError);
    EXPECT_EQ(test::write(server, nobody, outputVolume(0), 1.0F), kAudioHardwareBadObjectError);
    EXPECT_EQ(test::write(server, music, outputVolume(0), 1.0F),
              kAudioHardwareUnknownPropertyError);
    EXPECT_EQ(size, 77U);
    EXPECT_EQ(text, "kept");
}

TEST_F(EmbeddedProperties, ScopeAndElementBelongToTheAddress) {
    EXPECT_FALSE(server.hasProperty(
        speakers, {kAudioDevicePropertyNominalSampleRate, kAudioObjectPropertyScopeInput, 0}));
    EXPECT_FALSE(server.hasProperty(
        speakers, {kAudioDevicePropertyVolumeScalar, kAudioObjectPropertyScopeGlobal, 0}));
    EXPECT_FALSE(
        server.hasProperty(kAudioObjectSystemObject,
                           {kAudioHardwarePropertyDevices, kAudioObjectPropertyScopeGlobal, 1}));
}

TEST_F(EmbeddedProperties, ReadsNeedRoomAndTellWhatTheyFilled) {
    const auto rate = global(kAudioDevicePropertyNominalSampleRate);
    double value = 0;
    std::uint32_t size = sizeof value - 1;
    EXPECT_EQ(server.getPropertyData(speakers, rate, size, &value),
              kAudioHardwareBadPropertySizeError);
    EXPECT_EQ(size, sizeof value - 1);
    EXPECT_EQ(value, 0);

    double room[4] = {};
    size = sizeof room;
    EXPECT_EQ(server.getPropertyData(speakers, rate, size, room), noErr);
    EXPECT_EQ(size, sizeof value);

    size = sizeof value;
    EXPECT_EQ(server.getPropertyData(speakers, rate, size, nullptr),
              kAudioHardwareIllegalOperationError);
}

TEST_F(EmbeddedProperties, StringsAndPlainDataAreReadEachInItsOwnWay) {
    std::optional<std::string> text;
    EXPECT_EQ(readStatus(server, speakers, global(kAudioObjectPropertyName)),
              kAudioHardwareBadPropertySizeError);
    EXPECT_EQ(
        server.getStringProperty(speakers, global(kAudioDevicePropertyNominalSampleRate), text),
        kAudioHardwareBadPropertySizeError);
    EXPECT_EQ(test::sizeOf(server, speakers, global(kAudioObjectPropertyName)).size, sizeof(void*));
}

TEST_F(EmbeddedProperties, WhatCannotBeSetIsNotSet) {
    EXPECT_EQ(test::write(server, music, global(kAudioProcessPropertyPID), 5),
              kAudioHardwareIllegalOperationError);
    EXPECT_EQ(test::write(server, speakers, outputVolume(0), 0.5),
              kAudioHardwareBadPropertySizeError);
    EXPECT_EQ(server.setPropertyData(speakers, outputVolume(0), sizeof(float), nullptr),
              kAudioHardwareIllegalOperationError);
    EXPECT_EQ(readFloat32(server, speakers, outputVolume(0)), 1.0F);
}

TEST_F(EmbeddedProperties, AClientMayChooseTheDefaultOutput) {
    const auto headphones = server.addDevice({.uid = "headphones"});
    const auto address = global(kAudioHardwarePropertyDefaultOutputDevice);

    EXPECT_EQ(test::write(server, kAudioObjectSystemObject, address, headphones), noErr);
    EXPECT_EQ(server.defaultOutput(), headphones);
    EXPECT_EQ(test::write(server, kAudioObjectSystemObject, address, music),
              kAudioHardwareBadDeviceError);
    EXPECT_EQ(server.defaultOutput(), headphones);
}

TEST_F(EmbeddedProperties, ATapTellsItsFormat) {
    const GainTap tap(server, {music}, "speakers");

    const auto format = readTapFormat(server, tap.tap());
    ASSERT_TRUE(format);
    EXPECT_EQ(format->mSampleRate, 44100);
    EXPECT_EQ(format->mFormatID, kAudioFormatLinearPCM);
    EXPECT_EQ(format->mFormatFlags, kAudioFormatFlagIsFloat | kAudioFormatFlagIsPacked);
    EXPECT_EQ(format->mChannelsPerFrame, 2U);
    EXPECT_EQ(format->mBytesPerFrame, 8U);
    EXPECT_EQ(format->mBitsPerChannel, 32U);
}

TEST(EmbeddedTapFormat, FollowsTheSettingsOfTheServer) {
    EmbeddedAudioServer server({.tapLayout = BufferLayout::planar, .tapSampleRate = 96000});
    server.addDevice({.uid = "speakers"});
    const auto music = server.addProgram({.pid = 100});
    const GainTap tap(server, {music}, "speakers");

    const auto format = readTapFormat(server, tap.tap());
    ASSERT_TRUE(format);
    EXPECT_EQ(format->mSampleRate, 96000);
    EXPECT_NE(format->mFormatFlags & kAudioFormatFlagIsNonInterleaved, 0U);
    EXPECT_EQ(format->mBytesPerFrame, 4U);
}

TEST_F(EmbeddedProperties, IdsAreNeverUsedAgain) {
    server.removeDevice(speakers);
    server.exitProgram(music);
    const auto again = server.addDevice({.uid = "speakers"});

    EXPECT_GT(again, std::max(speakers, music));
    EXPECT_EQ(readStatus(server, speakers, global(kAudioDevicePropertyNominalSampleRate)),
              kAudioHardwareBadObjectError);
    EXPECT_THAT(readObjectList(server, kAudioObjectSystemObject,
                               global(kAudioHardwarePropertyProcessObjectList)),
                IsEmpty());
}

} // namespace
} // namespace orvanta::embedded
