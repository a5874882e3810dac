#include "tests/e2e/support/StreamClient.h"
#include "tests/platform/pipewire/support/OwnSink.h"
#include "tests/platform/pipewire/support/PipeWireTest.h"

#include <algorithm>
#include <memory>
#include <unistd.h>

namespace orvanta::test {
namespace {

/// Nodes as no well-behaved program makes them.
class PipeWireOddNodes : public PipeWireTest {
protected:
    void expectTheUsualOnes() {
        StreamClient client;
        client.open();
        EXPECT_NE(awaitProcess(client.pid()), kAudioObjectUnknown);
        const AudioObjectID speakers = awaitDevice("speakers");
        EXPECT_EQ(readChannelCount(hardware(), speakers, kAudioObjectPropertyScopeOutput), 2U);
    }

    [[nodiscard]] std::size_t devices() { return deviceList(hardware()).size(); }

    [[nodiscard]] AudioObjectID theOtherDevice() {
        const AudioObjectID speakers = awaitDevice("speakers");
        for (const AudioObjectID device : deviceList(hardware()))
            if (device != speakers)
                return device;
        return kAudioObjectUnknown;
    }

    AudioObjectID awaitTheOtherDevice() {
        EXPECT_TRUE(eventually(soon, [&] { return theOtherDevice() != kAudioObjectUnknown; }));
        return theOtherDevice();
    }
};

constexpr AudioObjectPropertyAddress uid{kAudioDevicePropertyDeviceUID};
constexpr AudioObjectPropertyAddress name{kAudioObjectPropertyName};

TEST_F(PipeWireOddNodes, WithNonsenseInEveryPropertyHideNobody) {
    const std::string endless(200000, 'x');
    const std::vector<std::string> nonsense{
        "", "\xFF\xFE\xC3", "banana", "-1", "99999999999999999999", "{ \"a\": [", endless};
    const std::vector<std::string> keys{"application.name",
                                        "application.id",
                                        "application.icon-name",
                                        "application.process.binary",
                                        "application.process.id",
                                        "media.name",
                                        "node.name",
                                        "node.description",
                                        "node.nick",
                                        "node.latency",
                                        "audio.channels",
                                        "audio.position",
                                        "device.id",
                                        "card.profile.device",
                                        "priority.session",
                                        "target.object",
                                        "pipewire.access.portal.app_id"};
    for (const std::string& value : nonsense) {
        Properties properties;
        for (const std::string& key : keys)
            properties[key] = value;
        // The one before may still be going.
        ASSERT_TRUE(eventually(soon, [&] { return devices() == 1; }));
        const OwnStream stream(properties);
        const OwnSink sink(properties);
        EXPECT_NE(ownProcess(), kAudioObjectUnknown);
        EXPECT_TRUE(eventually(soon, [&] { return devices() == 2; }));
        const AudioClient client = hardware().audioClient(::getpid()).value_or(AudioClient());
        EXPECT_LE(client.name.size(), 256U);
        for (const AudioObjectID device : deviceList(hardware())) {
            const auto shown = readString(hardware(), device, name);
            EXPECT_LE(shown.value_or("").size(), 256U);
            EXPECT_GT(
                readChannelCount(hardware(), device, kAudioObjectPropertyScopeOutput).value_or(0),
                0U);
        }
        expectTheUsualOnes();
    }
}

TEST_F(PipeWireOddNodes, MadeInsideOfTheServerHideNobodyEither) {
    graph().makeNode({{"factory.name", "support.null-audio-sink"}, {"media.class", "Audio/Sink"}});
    graph().makeNode({{"factory.name", "support.null-audio-sink"},
                      {"media.class", "Stream/Output/Audio"},
                      {"node.name", "nobody's stream"}});
    graph().makeNode({{"factory.name", "support.null-audio-sink"}, {"node.name", "no class"}});
    // The server takes what has no class for a device.
    EXPECT_TRUE(eventually(soon, [&] { return devices() == 3; }));
    expectTheUsualOnes();
}

TEST_F(PipeWireOddNodes, WithoutANameAreDevicesWithoutAUID) {
    const OwnSink sink({{"node.name", ""}, {"node.description", "Nameless"}});
    const AudioObjectID device = awaitTheOtherDevice();
    EXPECT_EQ(readString(hardware(), device, uid), std::nullopt);
    EXPECT_EQ(readString(hardware(), device, name), "Nameless");
    // And nobody who asks for a device without saying which gets this one.
    EXPECT_EQ(findDeviceID(hardware(), ""), kAudioObjectUnknown);
    const OwnStream stream;
    EXPECT_THROW(PlayedTap(hardware(), ownProcess(), ""), std::runtime_error);
}

TEST_F(PipeWireOddNodes, WithoutADescriptionAreShownByTheirNicknameOrName) {
    const OwnSink sink(Properties{{"node.name", "plain"}});
    const AudioObjectID device = awaitDevice("plain");
    EXPECT_EQ(readString(hardware(), device, name), "plain");
    const OwnSink other(Properties{{"node.name", "nicked"}, {"node.nick", "Nick"}});
    EXPECT_EQ(readString(hardware(), awaitDevice("nicked"), name), "Nick");
}

TEST_F(PipeWireOddNodes, WithoutChannelsCountAsPlayable) {
    graph().makeNode({{"factory.name", "support.null-audio-sink"},
                      {"node.name", "untold"},
                      {"media.class", "Audio/Sink"}});
    EXPECT_GT(readChannelCount(hardware(), awaitDevice("untold"), kAudioObjectPropertyScopeOutput)
                  .value_or(0),
              0U);
}

TEST_F(PipeWireOddNodes, OfOneNameAreDevicesOfTheirOwn) {
    const OwnSink first(Properties{{"node.name", "twin"}});
    const OwnSink second(Properties{{"node.name", "twin"}});
    EXPECT_TRUE(eventually(soon, [&] { return devices() == 3; }));
    EXPECT_NE(findDeviceID(hardware(), "twin"), kAudioObjectUnknown);
}

} // namespace
} // namespace orvanta::test
