#include "tests/platform/pipewire/support/PipeWireTest.h"

#include <algorithm>
#include <unistd.h>

namespace orvanta::test {
namespace {

class PipeWireAggregate : public PipeWireTest {
protected:
    void SetUp() override {
        PipeWireTest::SetUp();
        awaitDevice("speakers");
        tap_ = std::make_unique<PlayedTap>(hardware(), ownProcess(), "speakers");
    }

    [[nodiscard]] std::vector<AudioObjectID> activeDevices() {
        return readObjectList(hardware(), tap_->aggregate(),
                              {kAudioAggregateDevicePropertyActiveSubDeviceList});
    }

    OwnStream stream_;
    std::unique_ptr<PlayedTap> tap_;
};

TEST_F(PipeWireAggregate, IsListedForTheProcessThatMadeIt) {
    const auto devices = deviceList(hardware());
    EXPECT_NE(std::find(devices.begin(), devices.end(), tap_->aggregate()), devices.end());
    EXPECT_EQ(readUInt32(hardware(), tap_->aggregate(), {kAudioDevicePropertyTransportType}),
              kAudioDeviceTransportTypeAggregate);
    EXPECT_EQ(readString(hardware(), tap_->aggregate(), {kAudioObjectPropertyName}), "Aggregate");
}

TEST_F(PipeWireAggregate, HasOneStreamInEachDirection) {
    for (const auto scope : {kAudioObjectPropertyScopeInput, kAudioObjectPropertyScopeOutput})
        EXPECT_EQ(
            readObjectList(hardware(), tap_->aggregate(), {kAudioDevicePropertyStreams, scope})
                .size(),
            1U);
}

TEST_F(PipeWireAggregate, HasTwoChannelsInEachDirection) {
    for (const auto scope : {kAudioObjectPropertyScopeInput, kAudioObjectPropertyScopeOutput})
        EXPECT_EQ(readChannelCount(hardware(), tap_->aggregate(), scope), 2U);
}

TEST_F(PipeWireAggregate, NeverTouchesTheVolumeOfItsDevice) {
    const AudioObjectID device = awaitDevice("speakers");
    const float chosen = 0.4F;
    ASSERT_TRUE(eventually(soon, [&] { return hardware().hasProperty(device, mainVolume); }));
    ASSERT_EQ(hardware().setPropertyData(device, mainVolume, sizeof chosen, &chosen), noErr);
    for (AudioObjectPropertyElement element = 0; element <= 2; ++element) {
        const AudioObjectPropertyAddress address{kAudioDevicePropertyVolumeScalar,
                                                 kAudioObjectPropertyScopeOutput, element};
        const float full = 1.0F;
        bool settable = false;
        EXPECT_FALSE(hardware().hasProperty(tap_->aggregate(), address));
        EXPECT_NE(hardware().isPropertySettable(tap_->aggregate(), address, settable), noErr);
        EXPECT_FALSE(settable);
        EXPECT_NE(hardware().setPropertyData(tap_->aggregate(), address, sizeof full, &full),
                  noErr);
    }
    EXPECT_NEAR(readFloat32(hardware(), device, mainVolume).value_or(-1), chosen, 1e-6F);
}

TEST_F(PipeWireAggregate, HasTheRateOfTheGraph) {
    const AudioObjectPropertyAddress rate{kAudioDevicePropertyNominalSampleRate};
    EXPECT_EQ(readFloat64(hardware(), tap_->aggregate(), rate), 48000.0);
    const double same = 48000;
    const double other = 44100;
    EXPECT_EQ(hardware().setPropertyData(tap_->aggregate(), rate, sizeof same, &same), noErr);
    EXPECT_EQ(hardware().setPropertyData(tap_->aggregate(), rate, sizeof other, &other),
              kAudioHardwareIllegalOperationError);
}

TEST_F(PipeWireAggregate, FollowsTheRateOfTheGraph) {
    const AudioObjectPropertyAddress rate{kAudioDevicePropertyNominalSampleRate};
    awaitTapped(::getpid(), "speakers");
    graph().forceRate(44100);
    EXPECT_TRUE(eventually(soon, [&] {
        return readFloat64(hardware(), tap_->aggregate(), rate) == 44100.0 &&
               readTapFormat(hardware(), tap_->tap())->mSampleRate == 44100.0;
    }));
}

TEST_F(PipeWireAggregate, SaysWhenItsDeviceGoesAndComesBackToNone) {
    std::atomic<int> told{0};
    const auto count = [](AudioObjectID, const AudioObjectPropertyAddress&, void* data) {
        ++*static_cast<std::atomic<int>*>(data);
        return OSStatus{noErr};
    };
    const AudioObjectPropertyAddress active{kAudioAggregateDevicePropertyActiveSubDeviceList};
    hardware().addPropertyListener(tap_->aggregate(), active, count, &told);
    EXPECT_EQ(activeDevices(), std::vector{awaitDevice("speakers")});

    graph().plug({.name = "headphones", .priority = 500});
    graph().unplug("speakers");
    EXPECT_TRUE(eventually(soon, [&] { return told > 0 && activeDevices().empty(); }));

    graph().plug({.name = "speakers"});
    awaitDevice("speakers");
    letTimePass(Seconds(0.2));
    EXPECT_TRUE(activeDevices().empty());
    hardware().removePropertyListener(tap_->aggregate(), active, count, &told);
}

TEST_F(PipeWireAggregate, LeavesTheDeviceListWithItsDevice) {
    const auto isListed = [&] {
        const auto devices = deviceList(hardware());
        return std::find(devices.begin(), devices.end(), tap_->aggregate()) != devices.end();
    };
    graph().plug({.name = "headphones", .priority = 500});
    EXPECT_TRUE(isListed());
    graph().unplug("speakers");
    EXPECT_TRUE(eventually(soon, [&] { return !isListed(); }));
    graph().plug({.name = "speakers"});
    awaitDevice("speakers");
    EXPECT_FALSE(isListed()) << "it does not play on another device of that name";
}

TEST_F(PipeWireAggregate, LeavesItToOthersWhetherToReturnToItsDevice) {
    graph().plug({.name = "headphones", .priority = 500});
    awaitTapped(::getpid(), "speakers");
    graph().unplug("speakers");
    EXPECT_TRUE(eventually(soon, [&] { return activeDevices().empty(); }));
    graph().plug({.name = "speakers"});
    awaitDevice("speakers");
    letTimePass(Seconds(0.5));
    for (const GraphObject& tap : tapNodes())
        EXPECT_TRUE(graph().targets(tap.id).empty());

    tap_->stop();
    tap_->play("speakers");
    awaitTapped(::getpid(), "speakers");
}

TEST_F(PipeWireAggregate, NeverReturnsToTheDefaultByItself) {
    graph().plug({.name = "headphones", .priority = 500});
    awaitTapped(::getpid(), "speakers");
    graph().unplug("speakers");
    EXPECT_TRUE(eventually(soon, [&] { return activeDevices().empty(); }));
    letTimePass(Seconds(0.5));
    for (const GraphObject& tap : tapNodes())
        EXPECT_TRUE(graph().targets(tap.id).empty());
}

TEST_F(PipeWireAggregate, NeedsOneTapAndOneDevice) {
    AggregateDeviceDescription description;
    description.uid = "another";
    AudioObjectID device = 4711;
    EXPECT_NE(hardware().createAggregateDevice(description, device), noErr);
    description.taps = {"no such tap"};
    description.subDevices = {"speakers"};
    EXPECT_NE(hardware().createAggregateDevice(description, device), noErr);
    EXPECT_EQ(device, 4711U);
}

TEST_F(PipeWireAggregate, StartsOneIOProcAtATime) {
    AudioDeviceIOProcID none = nullptr;
    EXPECT_NE(hardware().createIOProcID(tap_->aggregate(), {}, none), noErr);
    AudioDeviceIOProcID second = nullptr;
    const auto proc = [](AudioObjectID, const AudioTimeStamp*, const AudioBufferList*,
                         const AudioTimeStamp*, AudioBufferList*, const AudioTimeStamp*, void*) {
        return OSStatus{noErr};
    };
    ASSERT_EQ(hardware().createIOProcID(tap_->aggregate(), {proc, nullptr, nullptr}, second),
              noErr);
    EXPECT_NE(hardware().startDevice(tap_->aggregate(), second), noErr);
    EXPECT_EQ(hardware().destroyIOProcID(tap_->aggregate(), second), noErr);
    EXPECT_NE(hardware().destroyIOProcID(tap_->aggregate(), second), noErr);
}

} // namespace
} // namespace orvanta::test
