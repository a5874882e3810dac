#include "core/discovery/OutputDeviceManager.h"

#include "platform/embedded/EmbeddedAudioServer.h"
#include "tests/support/PlatformFakes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <unordered_set>
#include <utility>

namespace orvanta::test {
namespace {

using embedded::FaultEffect;
using embedded::Journal;
using embedded::Operation;
using testing::ElementsAre;
using testing::IsEmpty;

class OutputDevices : public testing::Test {
protected:
    AudioObjectID add(const std::string& uid, const std::string& name) {
        return server.addDevice({.uid = uid, .name = name});
    }

    OutputDeviceManager& manager() {
        if (!managerStorage)
            managerStorage = std::make_unique<OutputDeviceManager>(fakes.platformWith(server));
        return *managerStorage;
    }

    /// After the main queue's next turns.
    const std::vector<OutputDevice>& devices() {
        static_cast<void>(manager());
        fakes.runLoop.runUntilIdle();
        return manager().availableDevices();
    }

    std::vector<std::string> names() {
        std::vector<std::string> result;
        for (const OutputDevice& device : devices())
            result.push_back(device.name);
        return result;
    }

    void failReads(AudioObjectPropertySelector selector,
                   FaultEffect effect = FaultEffect::failure) {
        server.faults().add(
            {.operation = Operation::getPropertyData, .effect = effect, .selector = selector});
    }

    EmbeddedAudioServer server;
    PlatformFakes fakes;
    std::unique_ptr<OutputDeviceManager> managerStorage;
};

TEST_F(OutputDevices, AreToldInFullOnTheNextTurnOfTheMainQueue) {
    const auto speakers =
        server.addDevice({.uid = "pci:1", .name = "Speakers", .manufacturer = "Good Sound Works"});
    const auto headphones = add("usb:2", "Headphones");
    EXPECT_THAT(manager().availableDevices(), IsEmpty());
    EXPECT_EQ(manager().defaultDeviceUID(), "");
    fakes.runLoop.runUntilIdle();
    ASSERT_EQ(manager().availableDevices().size(), 2U);
    const OutputDevice& first = manager().availableDevices()[0];
    EXPECT_EQ(first.id, headphones);
    EXPECT_EQ(first.uid, "usb:2");
    EXPECT_EQ(first.name, "Headphones");
    EXPECT_EQ(first.manufacturer, "");
    EXPECT_FALSE(first.isDefault);
    const OutputDevice& second = manager().availableDevices()[1];
    EXPECT_EQ(second.id, speakers);
    EXPECT_EQ(second.manufacturer, "Good Sound Works");
    EXPECT_TRUE(second.isDefault);
    EXPECT_EQ(manager().defaultDeviceUID(), "pci:1");
}

TEST_F(OutputDevices, AreReadInThisOrder) {
    add("speakers", "Speakers");
    server.journal().clear();
    static_cast<void>(manager());
    std::vector<std::string> calls;
    for (const auto& entry : server.journal().entries())
        calls.push_back(std::string(operationName(entry.operation)) + " " +
                        fourCharText(entry.address->mSelector) + " " +
                        fourCharText(entry.address->mScope));
    EXPECT_THAT(calls, ElementsAre("AudioObjectGetPropertyDataSize dev# glob", //
                                   "AudioObjectGetPropertyData dev# glob",     //
                                   "AudioObjectGetPropertyDataSize slay outp", //
                                   "AudioObjectGetPropertyData slay outp",     //
                                   "AudioObjectGetPropertyData uid  glob",     //
                                   "AudioObjectGetPropertyData lnam glob",     //
                                   "AudioObjectGetPropertyData lmak glob",     //
                                   "AudioObjectGetPropertyData dOut glob",     //
                                   "AudioObjectGetPropertyData uid  glob",     //
                                   "AudioObjectAddPropertyListener dev# glob",
                                   "AudioObjectAddPropertyListener dOut glob"));
    server.journal().clear();
    managerStorage.reset();
    const auto removed = server.journal().entries(Journal::of(Operation::removePropertyListener));
    ASSERT_EQ(removed.size(), 2U);
    EXPECT_EQ(removed[0].address->mSelector, kAudioHardwarePropertyDevices);
    EXPECT_EQ(removed[1].address->mSelector, kAudioHardwarePropertyDefaultOutputDevice);
    EXPECT_EQ(server.holdings().listeners, 0U);
}

TEST_F(OutputDevices, AreSortedWithoutRegardToCase) {
    for (const char* name : {"Zenith", "beta", "Alpha", "Éclair", "charlie", "Delta"})
        add(name, name);
    EXPECT_THAT(names(), ElementsAre("Alpha", "beta", "charlie", "Delta", "Éclair", "Zenith"));
}

TEST_F(OutputDevices, ThatOnlyRecordAreNotListed) {
    server.addDevice({.uid = "mic", .name = "Microphone", .channels = 0, .inputStreams = 1});
    EXPECT_THAT(devices(), IsEmpty());
}

TEST_F(OutputDevices, OfSeveralStreamsAreListedOnce) {
    server.addDevice(
        {.uid = "desk", .name = "Desk", .channels = 4, .layout = embedded::BufferLayout::planar});
    EXPECT_THAT(names(), ElementsAre("Desk"));
}

TEST_F(OutputDevices, WhoseStreamsCannotBeReadAreNotListed) {
    add("speakers", "Speakers");
    for (const auto operation : {Operation::getPropertyDataSize, Operation::getPropertyData}) {
        const auto fault = server.faults().add(
            {.operation = operation, .selector = kAudioDevicePropertyStreamConfiguration});
        managerStorage.reset();
        EXPECT_THAT(devices(), IsEmpty());
        server.faults().remove(fault);
    }
}

TEST_F(OutputDevices, WithoutAReadableNameGoByAPlaceholder) {
    add("a", "Alpha");
    const auto nameless = add("n", "Nameless");
    add("z", "Zenith");
    for (const auto effect : {FaultEffect::failure, FaultEffect::nullString}) {
        server.faults().clear();
        server.faults().add({.operation = Operation::getPropertyData,
                             .effect = effect,
                             .object = nameless,
                             .selector = kAudioObjectPropertyName});
        managerStorage.reset();
        EXPECT_THAT(names(), ElementsAre("Alpha", "Unknown Device", "Zenith"));
    }
}

TEST_F(OutputDevices, WithoutAReadableUIDAreNotListed) {
    add("speakers", "Speakers");
    failReads(kAudioDevicePropertyDeviceUID, FaultEffect::nullString);
    EXPECT_THAT(devices(), IsEmpty());
    EXPECT_EQ(manager().defaultDeviceUID(), "");
    managerStorage.reset();
    server.faults().clear();
    failReads(kAudioDevicePropertyDeviceUID);
    EXPECT_THAT(devices(), IsEmpty());
}

TEST_F(OutputDevices, WithoutAReadableMakerHaveNone) {
    server.addDevice({.uid = "speakers", .name = "Speakers", .manufacturer = "Somebody"});
    failReads(kAudioObjectPropertyManufacturer);
    ASSERT_EQ(devices().size(), 1U);
    EXPECT_EQ(devices()[0].manufacturer, "");
}

TEST_F(OutputDevices, OfThisProgramsOwnMakingAreNotListed) {
    add("com.meridane.orvanta.agg.1.2", "Ours");
    add("com.orvantaX", "Also ours");
    add("COM.ORVANTA", "Capital");
    add("usb.com.orvanta.1", "Within");
    EXPECT_THAT(names(), ElementsAre("Capital", "Within"));
}

TEST_F(OutputDevices, AnUnreadableListIsEmpty) {
    add("speakers", "Speakers");
    failReads(kAudioHardwarePropertyDevices);
    EXPECT_THAT(devices(), IsEmpty());
    EXPECT_EQ(manager().defaultDeviceUID(), "speakers");
    server.faults().clear();
    server.faults().add({.operation = Operation::getPropertyDataSize,
                         .effect = FaultEffect::givesBytes,
                         .bytes = 3,
                         .selector = kAudioHardwarePropertyDevices});
    manager().refresh();
    EXPECT_THAT(devices(), IsEmpty());
}

TEST_F(OutputDevices, WithoutADefaultNoneIsMarked) {
    add("speakers", "Speakers");
    server.setDefaultOutput(kAudioObjectUnknown);
    ASSERT_EQ(devices().size(), 1U);
    EXPECT_FALSE(devices()[0].isDefault);
    EXPECT_EQ(manager().defaultDeviceUID(), "");
    failReads(kAudioHardwarePropertyDefaultOutputDevice);
    manager().refresh();
    EXPECT_FALSE(devices()[0].isDefault);
}

TEST_F(OutputDevices, AreEqualWhenTheirUIDIs) {
    const OutputDevice one{.id = 1, .uid = "u", .name = "One", .isDefault = true};
    const OutputDevice other{.id = 2, .uid = "u", .name = "Other"};
    EXPECT_EQ(one, other);
    EXPECT_EQ(std::vector{one}, std::vector{other});
    EXPECT_NE(one, (OutputDevice{.id = 1, .uid = "v", .name = "One", .isDefault = true}));
    EXPECT_EQ((std::unordered_set<OutputDevice>{one, other}.size()), 1U);
}

TEST_F(OutputDevices, FollowTheSystemsChanges) {
    const auto speakers = add("speakers", "Speakers");
    EXPECT_THAT(names(), ElementsAre("Speakers"));
    const auto headphones = add("headphones", "Headphones");
    EXPECT_THAT(names(), ElementsAre("Headphones", "Speakers"));
    server.setDefaultOutput(headphones);
    EXPECT_TRUE(devices()[0].isDefault);
    EXPECT_EQ(manager().defaultDeviceUID(), "headphones");
    server.renameDevice(headphones, "Zebra");
    EXPECT_THAT(names(), ElementsAre("Speakers", "Zebra"));
    server.removeDevice(speakers);
    EXPECT_THAT(names(), ElementsAre("Zebra"));
}

TEST_F(OutputDevices, ArePublishedBeforeTheDefaultOnTheMainQueueOnly) {
    add("speakers", "Speakers");
    static_cast<void>(devices());
    std::vector<std::string> told;
    const auto list = manager().publishedDevices().observe(
        [&](const auto& coming) { told.push_back("devices " + std::to_string(coming.size())); });
    const auto standard = manager().publishedDefaultUID().observe(
        [&](const std::string& coming) { told.push_back("default " + coming); });
    const auto headphones = add("headphones", "Headphones");
    server.setDefaultOutput(headphones);
    EXPECT_THAT(told, IsEmpty());
    fakes.runLoop.runUntilIdle();
    EXPECT_THAT(told,
                ElementsAre("devices 2", "default headphones", "devices 2", "default headphones"));
}

TEST_F(OutputDevices, TellOfAChangeOnceItIsInEffect) {
    add("speakers", "Speakers");
    static_cast<void>(devices());
    std::vector<std::string> told;
    const auto observation = manager().observe([&] {
        std::string seen = manager().defaultDeviceUID() + ":";
        for (const OutputDevice& device : manager().availableDevices())
            seen += " " + device.name;
        told.push_back(seen);
    });
    const auto headphones = add("headphones", "Headphones");
    EXPECT_THAT(told, IsEmpty()) << "before the main queue's turn";
    fakes.runLoop.runUntilIdle();
    EXPECT_THAT(told, ElementsAre("speakers: Headphones Speakers"));
    server.setDefaultOutput(headphones);
    fakes.runLoop.runUntilIdle();
    server.renameDevice(headphones, "Zebra");
    manager().refresh();
    fakes.runLoop.runUntilIdle();
    EXPECT_THAT(told, ElementsAre("speakers: Headphones Speakers",
                                  "headphones: Headphones Speakers", "headphones: Speakers Zebra"));
}

TEST_F(OutputDevices, TellOnceOfADefaultThatGoesAlthoughTheSystemAnnouncesItTwice) {
    add("headphones", "Headphones");
    add("speakers", "Speakers");
    static_cast<void>(devices());
    int readings = 0;
    int changes = 0;
    const auto reading = manager().publishedDevices().observe([&](const auto&) { ++readings; });
    const auto change = manager().observe([&] { ++changes; });
    server.removeDevice(server.findDevice("headphones"));
    fakes.runLoop.runUntilIdle();
    EXPECT_EQ(readings, 2);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(manager().defaultDeviceUID(), "speakers");
}

TEST_F(OutputDevices, TellNobodyOfWhatIsTheSameOrOnceTheObservationHasEnded) {
    add("speakers", "Speakers");
    static_cast<void>(devices());
    int changes = 0;
    auto observation = manager().observe([&] { ++changes; });
    manager().refresh();
    fakes.runLoop.runUntilIdle();
    EXPECT_EQ(changes, 0);
    observation = Observation();
    add("headphones", "Headphones");
    EXPECT_THAT(names(), ElementsAre("Headphones", "Speakers"));
    EXPECT_EQ(changes, 0);
}

/// Does something of its own while the default is read, once.
class InterruptedServer final : public EmbeddedAudioServer {
public:
    OSStatus getPropertyData(AudioObjectID object, const AudioObjectPropertyAddress& address,
                             std::uint32_t& ioSize, void* outData) override {
        if (address.mSelector == kAudioHardwarePropertyDefaultOutputDevice)
            std::exchange(meanwhile, [] {})();
        return EmbeddedAudioServer::getPropertyData(object, address, ioSize, outData);
    }

    std::function<void()> meanwhile = [] {
    };
};

TEST(InterruptedRefresh, WinsWhenItIsPostedLaterAlthoughItHasReadEarlier) {
    InterruptedServer server;
    PlatformFakes fakes;
    server.addDevice({.uid = "speakers", .name = "Speakers"});
    OutputDeviceManager manager(fakes.platformWith(server));
    fakes.runLoop.runUntilIdle();
    std::vector<std::size_t> sizes;
    const auto observation = manager.publishedDevices().observe(
        [&](const auto& coming) { sizes.push_back(coming.size()); });
    server.meanwhile = [&] {
        server.addDevice({.uid = "headphones", .name = "Headphones"});
        manager.refresh();
    };
    manager.refresh();
    fakes.runLoop.runUntilIdle();
    EXPECT_THAT(sizes, ElementsAre(2U, 1U, 2U)) << "the last one is the notification's";
}

/// Whose every device has an empty UID.
class NamelessServer final : public EmbeddedAudioServer {
public:
    OSStatus getStringProperty(AudioObjectID object, const AudioObjectPropertyAddress& address,
                               std::optional<std::string>& outText) override {
        const OSStatus status = EmbeddedAudioServer::getStringProperty(object, address, outText);
        if (status == noErr && address.mSelector == kAudioDevicePropertyDeviceUID)
            outText = "";
        return status;
    }
};

TEST(NamelessDevices, AreNotTakenForADefaultThatIsUnknown) {
    NamelessServer server;
    PlatformFakes fakes;
    server.addDevice({.uid = "speakers", .name = "Speakers"});
    const OutputDeviceManager manager(fakes.platformWith(server));
    fakes.runLoop.runUntilIdle();
    ASSERT_EQ(manager.availableDevices().size(), 1U);
    EXPECT_FALSE(manager.availableDevices()[0].isDefault);
}

TEST_F(OutputDevices, OfAManagerThatHasGoneAreNotReadAnew) {
    add("speakers", "Speakers");
    manager().refresh();
    server.notify(kAudioObjectSystemObject, {kAudioHardwarePropertyDevices});
    managerStorage.reset();
    server.journal().clear();
    EXPECT_EQ(fakes.runLoop.runUntilIdle(), 3U);
    EXPECT_THAT(server.journal().entries(), IsEmpty()) << "the notification reads nothing anew";
}

} // namespace
} // namespace orvanta::test
