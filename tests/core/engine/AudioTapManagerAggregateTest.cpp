#include "tests/core/engine/EngineNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using embedded::Operation;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

// ---- rates and volumes

embedded::ServerSettings aggregatesAt(double rate) {
    embedded::ServerSettings settings;
    settings.aggregateSampleRate = rate;
    return settings;
}

embedded::DeviceSettings speakersAt(double rate) {
    auto settings = EngineRig::speakersByDefault();
    settings.sampleRate = rate;
    return settings;
}

std::vector<embedded::JournalEntry> sets(EngineRig& rig) {
    return rig.server.journal().entries(embedded::Journal::of(Operation::setPropertyData));
}

TEST(AudioTapManagerAggregate, SetsTheAggregateToTheRateOfItsDevice) {
    EngineRig rig(aggregatesAt(48000), speakersAt(44100));
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    const auto changes = sets(rig);
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_EQ(changes[0].address->mSelector, kAudioDevicePropertyNominalSampleRate);
    EXPECT_EQ(changes[0].value, 44100.0);
    EXPECT_THAT(rig.log.texts(),
                Contains("🔬 rates: agg=48000.0Hz out=44100.0Hz uid=speakers bt=false\n"));
    EXPECT_THAT(rig.log.texts(), Contains("  rate match: ✅\n"));
}

TEST(AudioTapManagerAggregate, ADifferenceOfExactlyOneHertzIsNoDifference) {
    EngineRig rig(aggregatesAt(48000), speakersAt(48001));
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    EXPECT_THAT(sets(rig), IsEmpty());
    EngineRig more(aggregatesAt(48000), speakersAt(48001.5));
    ASSERT_TRUE(more.manager->createTap(pid, more.program));
    EXPECT_EQ(sets(more).size(), 1U);
    EXPECT_THAT(more.log.texts(),
                Contains("🔬 rates: agg=48000.0Hz out=48001.5Hz uid=speakers bt=false\n"));
}

TEST(AudioTapManagerAggregate, ARefusedRateMatchIsLoggedAndNothingElse) {
    EngineRig rig(aggregatesAt(48000), speakersAt(44100));
    rig.server.faults().add({.operation = Operation::setPropertyData,
                             .status = refusal,
                             .selector = kAudioDevicePropertyNominalSampleRate});
    EXPECT_TRUE(rig.manager->createTap(pid, rig.program));
    EXPECT_TRUE(rig.log.has(LogLevel::debug, "  rate match: ⚠️ err -4321\n"));
}

TEST(AudioTapManagerAggregate, UnreadableRatesReadAsZeroAndAnUnknownDeviceRateMatchesNothing) {
    EngineRig rig;
    rig.server.faults().add({.operation = Operation::getPropertyData,
                             .selector = kAudioDevicePropertyNominalSampleRate});
    EXPECT_TRUE(rig.manager->createTap(pid, rig.program));
    EXPECT_THAT(rig.log.texts(), Contains("🔬 rates: agg=0.0Hz out=0.0Hz uid=speakers bt=false\n"));
    EXPECT_THAT(sets(rig), IsEmpty());
}

TEST(AudioTapManagerAggregate, AnUnreadableRateOfTheAggregateIsSetLikeAnyOther) {
    EngineRig rig;
    rig.server.faults().add({.operation = Operation::getPropertyData,
                             .times = 1,
                             .selector = kAudioDevicePropertyNominalSampleRate});
    EXPECT_TRUE(rig.manager->createTap(pid, rig.program));
    EXPECT_THAT(rig.log.texts(),
                Contains("🔬 rates: agg=0.0Hz out=48000.0Hz uid=speakers bt=false\n"));
    EXPECT_EQ(sets(rig).size(), 1U);
}

TEST(AudioTapManagerAggregate, ADefaultOutputThatIsNotInTheListIsStillNamedAndNoRateIsMatched) {
    embedded::ServerSettings settings = aggregatesAt(48000);
    settings.refusesUnknownSubDevices = false;
    EngineRig rig(settings, speakersAt(44100));
    rig.server.faults().add(
        {.operation = Operation::getPropertyDataSize, .selector = kAudioHardwarePropertyDevices});
    EXPECT_TRUE(rig.manager->createTap(pid, rig.program));
    const auto builds =
        rig.server.journal().entries(embedded::Journal::of(Operation::createAggregateDevice));
    EXPECT_EQ(builds[0].aggregate->master, "speakers");
    EXPECT_THAT(sets(rig), IsEmpty());
    for (const auto& text : rig.log.texts())
        EXPECT_EQ(text.find("rates:"), std::string::npos);
}

TEST(AudioTapManagerAggregate, SetsEveryVolumeOfTheAggregateThatCanBeSetToUnity) {
    embedded::ServerSettings settings;
    settings.aggregateVolumes = {{.element = 0, .scalar = 0.5F, .settable = false},
                                 {.element = 1, .scalar = 0.5F, .settable = true},
                                 {.element = 2, .scalar = 0.5F, .settable = true}};
    EngineRig rig(settings);
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    std::vector<AudioObjectPropertyElement> elements;
    for (const auto& change : sets(rig)) {
        EXPECT_EQ(change.address->mSelector, kAudioDevicePropertyVolumeScalar);
        EXPECT_EQ(change.address->mScope, kAudioObjectPropertyScopeOutput);
        EXPECT_EQ(change.value, 1.0);
        EXPECT_NE(change.object, rig.speakers);
        elements.push_back(change.address->mElement);
    }
    EXPECT_THAT(elements, ElementsAre(1U, 2U));
}

TEST(AudioTapManagerAggregate, AVolumeThatCannotBeAskedOrSetIsPassedOver) {
    embedded::ServerSettings settings;
    settings.aggregateVolumes = {{.element = 0}, {.element = 1}, {.element = 2}};
    EngineRig rig(settings);
    rig.server.failNext(Operation::isPropertySettable, refusal);
    rig.server.failNext(Operation::setPropertyData, refusal);
    EXPECT_TRUE(rig.manager->createTap(pid, rig.program));
    EXPECT_EQ(sets(rig).size(), 2U) << "element 0 was not asked, element 1 failed, element 2 set";
}

// ---- Bluetooth

embedded::DeviceSettings bluetooth(const std::string& name, FourCharCode transport) {
    auto settings = EngineRig::speakersByDefault();
    settings.uid = "bt";
    settings.name = name;
    settings.transport = transport;
    return settings;
}

TEST(AudioTapManagerAggregate, ABluetoothDeviceOfAnyNameIsDecoupled) {
    for (const auto transport :
         {kAudioDeviceTransportTypeBluetooth, kAudioDeviceTransportTypeBluetoothLE}) {
        EngineRig rig({}, bluetooth("Headset \"X\"", transport));
        ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
        const auto texts = rig.log.texts();
        EXPECT_THAT(texts, Contains("🎧 BT device: bt name=\"Headset \"X\"\" apple_product=false "
                                    "decoupled=true\n"));
        EXPECT_THAT(texts, Contains("🔵 BT direct: output=bt deviceID=" +
                                    std::to_string(rig.speakers) + "\n"));
        EXPECT_THAT(texts, Contains("🔬 rates: agg=48000.0Hz out=48000.0Hz uid=bt bt=true\n"));
        EXPECT_EQ(rig.state().btOutputDeviceID, rig.speakers);
    }
}

TEST(AudioTapManagerAggregate, ABluetoothDeviceWithAMarkerAnywhereInItsNameKeepsThePlainRoute) {
    for (const std::string name :
         {"Somebody's AIRPODS Pro", "HeartBeats band", "HomePod", "living room apple tv"}) {
        EngineRig rig({}, bluetooth(name, kAudioDeviceTransportTypeBluetooth));
        ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
        const auto texts = rig.log.texts();
        EXPECT_THAT(texts, Contains("🎧 BT device: bt name=\"" + name +
                                    "\" apple_product=true decoupled=false\n"));
        EXPECT_THAT(texts, Contains("🔬 rates: agg=48000.0Hz out=48000.0Hz uid=bt bt=false\n"));
        EXPECT_EQ(rig.state().btOutputDeviceID, kAudioObjectUnknown);
        for (const auto& text : texts)
            EXPECT_EQ(text.find("BT direct"), std::string::npos);
    }
}

TEST(AudioTapManagerAggregate, ABluetoothDeviceWithoutAReadableNameIsDecoupled) {
    EngineRig rig({}, bluetooth("Beats", kAudioDeviceTransportTypeBluetooth));
    rig.server.faults().add(
        {.operation = Operation::getPropertyData, .selector = kAudioObjectPropertyName});
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    EXPECT_THAT(rig.log.texts(),
                Contains("🎧 BT device: bt name=\"\" apple_product=false decoupled=true\n"));
}

TEST(AudioTapManagerAggregate, AUSBDeviceOfSuchANameIsNotTestedAtAll) {
    EngineRig rig({}, bluetooth("AirPods", kAudioDeviceTransportTypeUSB));
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    for (const auto& text : rig.log.texts())
        EXPECT_EQ(text.find("BT"), std::string::npos);
}

} // namespace
} // namespace orvanta::test
