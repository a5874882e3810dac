#include "tests/e2e/support/EndToEndTest.h"
#include "tests/e2e/support/SignalMatch.h"

namespace orvanta::test {

namespace {

class DeviceVolume : public EndToEndTest {
protected:
    void setAsTheUserDoes(const std::string& device, const std::string& percent) const {
        runToEnd({"pactl", "set-sink-volume", device, percent});
    }

    /// What the user's tools show for a device, for all its channels.
    [[nodiscard]] static std::string shown(const std::string& device) {
        return runToEnd({"pactl", "get-sink-volume", device});
    }

    /// Level of the device's monitor against that of the program's stream.
    [[nodiscard]] double heard(pid_t pid, const std::string& device) {
        const GraphObject stream = graph().awaitPlayback(pid);
        const Capture capture = recordUndisturbed(stream.id, device, 12000);
        const auto match = findSignal(capture.channels[2], capture.channels[0]);
        return match ? match->gain : 0;
    }
};

TEST_F(DeviceVolume, StaysTheUsersThroughTapReRouteAndRelease) {
    graph().plug({.name = "headphones", .priority = 500});
    // The tools' 60 % are 0.6 to the third power.
    constexpr double speakersGain = 0.216;
    constexpr double headphonesGain = 0.125;
    setAsTheUserDoes("speakers", "60%");
    setAsTheUserDoes("headphones", "50%");
    const std::string speakers = shown("speakers");
    const std::string headphones = shown("headphones");
    StreamClient client;
    client.open();
    EXPECT_NEAR(heard(client.pid(), "speakers"), speakersGain, 1e-3);

    mixer().awaitDevice("headphones");
    mixer().tap(client.pid(), 0.5F);
    awaitTapped(client.pid());
    EXPECT_NEAR(heard(client.pid(), "speakers"), 0.5 * speakersGain, 1e-3);
    EXPECT_EQ(shown("speakers"), speakers);

    ASSERT_TRUE(mixer().manager().routeToDevice(client.pid(), "headphones"));
    awaitTapped(client.pid());
    EXPECT_NEAR(heard(client.pid(), "headphones"), 0.5 * headphonesGain, 1e-3);
    EXPECT_EQ(shown("speakers"), speakers);
    EXPECT_EQ(shown("headphones"), headphones);

    mixer().manager().removeTap(client.pid());
    awaitOnly(client.pid(), "speakers");
    EXPECT_NEAR(heard(client.pid(), "speakers"), speakersGain, 1e-3);
    EXPECT_EQ(shown("speakers"), speakers);
    EXPECT_EQ(shown("headphones"), headphones);
}

TEST_F(DeviceVolume, StaysTheUsersWhenTheEngineTapsAndReleases) {
    setAsTheUserDoes("speakers", "60%");
    const std::string before = shown("speakers");
    StreamClient client;
    client.open();
    graph().awaitPlayback(client.pid());

    mixer().tap(client.pid(), 0.5F);
    awaitTapped(client.pid());
    EXPECT_EQ(shown("speakers"), before);
    EXPECT_NEAR(heard(client.pid(), "speakers"), 0.5 * 0.216, 1e-3);

    mixer().manager().removeTap(client.pid());
    awaitOnly(client.pid(), "speakers");
    EXPECT_EQ(shown("speakers"), before);
}

TEST_F(DeviceVolume, ChangedWhileTappedIsHeard) {
    StreamClient client;
    client.open();
    graph().awaitPlayback(client.pid());
    mixer().tap(client.pid(), 0.5F);
    awaitTapped(client.pid());

    setAsTheUserDoes("speakers", "50%");
    EXPECT_NEAR(heard(client.pid(), "speakers"), 0.5 * 0.125, 1e-3);
}

} // namespace

} // namespace orvanta::test
