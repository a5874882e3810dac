#include "tests/platform/pipewire/support/OwnCard.h"
#include "tests/platform/pipewire/support/OwnSink.h"
#include "tests/platform/pipewire/support/PipeWireTest.h"

#include <algorithm>
#include <limits>

namespace orvanta::test {
namespace {

constexpr AudioObjectPropertyAddress volumeAddress(AudioObjectPropertyElement element) {
    return {kAudioDevicePropertyVolumeScalar, kAudioObjectPropertyScopeOutput, element};
}

class PipeWireDevice : public PipeWireTest {
protected:
    [[nodiscard]] AudioObjectID defaultDevice() {
        return readUInt32(hardware(), kAudioObjectSystemObject,
                          {kAudioHardwarePropertyDefaultOutputDevice})
            .value_or(9999);
    }

    OSStatus setVolume(AudioObjectID device, AudioObjectPropertyElement element, float value) {
        return hardware().setPropertyData(device, volumeAddress(element), sizeof value, &value);
    }

    [[nodiscard]] float volumeOf(AudioObjectID device, AudioObjectPropertyElement element) {
        return readFloat32(hardware(), device, volumeAddress(element)).value_or(-1.0F);
    }
};

TEST_F(PipeWireDevice, SaysWhatItIs) {
    const AudioObjectID device = findDeviceID(hardware(), "speakers");
    ASSERT_NE(device, kAudioObjectUnknown);
    EXPECT_EQ(defaultDevice(), device);
    EXPECT_TRUE(readString(hardware(), device, {kAudioObjectPropertyName}).has_value());
    EXPECT_EQ(readUInt32(hardware(), device, {kAudioDevicePropertyTransportType}),
              kAudioDeviceTransportTypeVirtual);
    EXPECT_EQ(readFloat64(hardware(), device, {kAudioDevicePropertyNominalSampleRate}), 48000.0);
    EXPECT_EQ(readObjectList(hardware(), device,
                             {kAudioDevicePropertyStreams, kAudioObjectPropertyScopeOutput})
                  .size(),
              1U);
    EXPECT_FALSE(hardware().hasProperty(device, {kAudioTapPropertyFormat}));
}

TEST_F(PipeWireDevice, GetsANewIdWhenItIsPluggedAgain) {
    const AudioObjectID first = awaitDevice("speakers");
    graph().unplug("speakers");
    EXPECT_TRUE(eventually(soon, [&] { return deviceList(hardware()).empty(); }));
    EXPECT_TRUE(eventually(soon, [&] { return defaultDevice() == 0; }));
    graph().plug({.name = "speakers"});
    EXPECT_NE(awaitDevice("speakers"), first);
    EXPECT_TRUE(eventually(soon, [&] { return defaultDevice() == awaitDevice("speakers"); }));
}

TEST_F(PipeWireDevice, KeepsItsIdThroughARestartOfTheServer) {
    const AudioObjectID device = awaitDevice("speakers");
    killEverything();
    EXPECT_TRUE(eventually(soon, [&] { return defaultDevice() == 9999; }));
    std::uint32_t size = 0;
    EXPECT_EQ(hardware().getPropertyDataSize(kAudioObjectSystemObject,
                                             {kAudioHardwarePropertyDevices}, size),
              kAudioHardwareNotRunningError);
    startEverything();
    EXPECT_EQ(awaitDevice("speakers"), device);
}

TEST_F(PipeWireDevice, BecomesTheDefaultWhenTheUserSaysSo) {
    graph().plug({.name = "headphones", .priority = 500});
    const AudioObjectID headphones = awaitDevice("headphones");
    EXPECT_NE(defaultDevice(), headphones);
    graph().chooseDefault("headphones");
    EXPECT_TRUE(eventually(soon, [&] { return defaultDevice() == headphones; }));
}

TEST_F(PipeWireDevice, HasAVolumeThatFollowsTheCubeLaw) {
    const AudioObjectID device = awaitDevice("speakers");
    ASSERT_TRUE(eventually(soon, [&] { return volumeOf(device, 0) >= 0; }));
    bool settable = false;
    EXPECT_EQ(hardware().isPropertySettable(device, volumeAddress(0), settable), noErr);
    EXPECT_TRUE(settable);
    EXPECT_EQ(setVolume(device, 0, 0.5F), noErr);
    EXPECT_NEAR(volumeOf(device, 0), 0.5F, 1e-6F);
    EXPECT_NEAR(volumeOf(device, 1), 0.5F, 1e-6F);
    EXPECT_EQ(setVolume(device, 2, 0.25F), noErr);
    EXPECT_NEAR(volumeOf(device, 2), 0.25F, 1e-6F);
    EXPECT_NEAR(volumeOf(device, 1), 0.5F, 1e-6F);
    EXPECT_NEAR(volumeOf(device, 0), 0.5F, 1e-6F);
    // The server's own view of it, through the eyes of other programs.
    graph().await("the bridge tells the volumes", [] {
        const std::string words = runToEnd({"pactl", "get-sink-volume", "speakers"});
        return words.find("50%") != std::string::npos && words.find("25%") != std::string::npos;
    });
}

TEST_F(PipeWireDevice, FollowsAVolumeSetByAnotherProgram) {
    const AudioObjectID device = awaitDevice("speakers");
    runToEnd({"pactl", "set-sink-volume", "speakers", "30%"});
    EXPECT_TRUE(eventually(soon, [&] { return std::abs(volumeOf(device, 0) - 0.3F) < 0.001F; }));
}

TEST_F(PipeWireDevice, RefusesWhatIsNoVolume) {
    const AudioObjectID device = awaitDevice("speakers");
    ASSERT_TRUE(eventually(soon, [&] { return volumeOf(device, 0) >= 0; }));
    const float before = volumeOf(device, 0);
    EXPECT_NE(setVolume(device, 0, std::numeric_limits<float>::quiet_NaN()), noErr);
    EXPECT_NE(setVolume(device, 3, 0.5F), noErr);
    const float half = 0.5F;
    EXPECT_NE(hardware().setPropertyData(device, volumeAddress(0), 2, &half), noErr);
    EXPECT_NE(hardware().setPropertyData(device, volumeAddress(0), sizeof half, nullptr), noErr);
    EXPECT_EQ(volumeOf(device, 0), before);
}

TEST_F(PipeWireDevice, RunsAtTheGraphsRateAndNoOther) {
    const AudioObjectID device = awaitDevice("speakers");
    const AudioObjectPropertyAddress rate{kAudioDevicePropertyNominalSampleRate};
    const double same = 48000;
    const double other = 96000;
    EXPECT_EQ(hardware().setPropertyData(device, rate, sizeof same, &same), noErr);
    EXPECT_EQ(hardware().setPropertyData(device, rate, sizeof other, &other),
              kAudioHardwareIllegalOperationError);
}

TEST_F(PipeWireDevice, HasOneStreamWithAllItsChannels) {
    const auto channels = [&](const std::string& device, AudioObjectPropertyScope scope) {
        return readChannelCount(hardware(), awaitDevice(device), scope);
    };
    graph().plug({.name = "mono", .positions = "MONO"});
    graph().plug({.name = "surround", .positions = "FL,FR,FC,LFE,SL,SR"});
    EXPECT_EQ(channels("mono", kAudioObjectPropertyScopeOutput), 1U);
    EXPECT_EQ(channels("speakers", kAudioObjectPropertyScopeOutput), 2U);
    EXPECT_EQ(channels("surround", kAudioObjectPropertyScopeOutput), 6U);
    EXPECT_EQ(channels("surround", kAudioObjectPropertyScopeInput), 0U);
}

TEST_F(PipeWireDevice, HasNoManufacturerWithoutACard) {
    const AudioObjectPropertyAddress manufacturer{kAudioObjectPropertyManufacturer};
    const AudioObjectID device = awaitDevice("speakers");
    EXPECT_TRUE(hardware().hasProperty(device, manufacturer));
    EXPECT_EQ(readString(hardware(), device, manufacturer), std::nullopt);
}

TEST_F(PipeWireDevice, HasTheManufacturerOfItsCard) {
    const OwnCard card({{"device.name", "card"}, {"device.vendor.name", "Example Audio Ltd."}});
    graph().makeNode({{"factory.name", "support.null-audio-sink"},
                      {"node.name", "of-the-card"},
                      {"media.class", "Audio/Sink"},
                      {"device.id", std::to_string(card.id())}});
    const AudioObjectID device = awaitDevice("of-the-card");
    EXPECT_TRUE(eventually(soon, [&] {
        return readString(hardware(), device, {kAudioObjectPropertyManufacturer}) ==
               "Example Audio Ltd.";
    }));
}

/// Counts what a listener is told.
class ToldChanges {
public:
    ToldChanges(AudioHardware& hardware, AudioObjectID object,
                const AudioObjectPropertyAddress& address)
        : hardware_(hardware), object_(object), address_(address) {
        hardware_.addPropertyListener(object_, address_, count, &times_);
    }

    ToldChanges(const ToldChanges&) = delete;
    ToldChanges& operator=(const ToldChanges&) = delete;

    ~ToldChanges() { hardware_.removePropertyListener(object_, address_, count, &times_); }

    [[nodiscard]] int times() const { return times_; }

private:
    static OSStatus count(AudioObjectID, const AudioObjectPropertyAddress&, void* data) {
        ++*static_cast<std::atomic<int>*>(data);
        return noErr;
    }

    AudioHardware& hardware_;
    AudioObjectID object_;
    AudioObjectPropertyAddress address_;
    std::atomic<int> times_{0};
};

TEST_F(PipeWireDevice, TellsOfItsNewNameAlsoThoseWhoListTheDevices) {
    const AudioObjectPropertyAddress name{kAudioObjectPropertyName};
    OwnSink sink({{"node.name", "renamed"}, {"node.description", "Before"}});
    const AudioObjectID device = awaitDevice("renamed");
    EXPECT_EQ(readString(hardware(), device, name), "Before");
    const ToldChanges names(hardware(), device, name);
    const ToldChanges lists(hardware(), kAudioObjectSystemObject, {kAudioHardwarePropertyDevices});
    sink.update({{"node.description", "After"}});
    EXPECT_TRUE(eventually(soon, [&] { return names.times() > 0 && lists.times() > 0; }));
    EXPECT_EQ(readString(hardware(), device, name), "After");
    EXPECT_EQ(awaitDevice("renamed"), device);
}

TEST_F(PipeWireDevice, TellsWhenTheRateOfTheGraphChanges) {
    const AudioObjectPropertyAddress rate{kAudioDevicePropertyNominalSampleRate};
    const AudioObjectID device = awaitDevice("speakers");
    const ToldChanges rates(hardware(), device, rate);
    graph().forceRate(44100);
    EXPECT_TRUE(eventually(soon, [&] { return rates.times() > 0; }));
    EXPECT_EQ(readFloat64(hardware(), device, rate), 44100.0);
}

TEST_F(PipeWireDevice, OfNobodyAnswersFailingStatuses) {
    std::uint32_t size = 0;
    std::optional<std::string> text = "unchanged";
    EXPECT_EQ(hardware().getPropertyDataSize(4242, {kAudioDevicePropertyDeviceUID}, size),
              kAudioHardwareBadObjectError);
    EXPECT_EQ(hardware().getStringProperty(4242, {kAudioDevicePropertyDeviceUID}, text),
              kAudioHardwareBadObjectError);
    EXPECT_EQ(text, "unchanged");
    EXPECT_FALSE(hardware().hasProperty(4242, {kAudioDevicePropertyDeviceUID}));
    EXPECT_NE(hardware().destroyProcessTap(4242), noErr);
    EXPECT_NE(hardware().destroyAggregateDevice(4242), noErr);
    EXPECT_NE(hardware().stopDevice(4242, nullptr), noErr);
}

} // namespace
} // namespace orvanta::test
