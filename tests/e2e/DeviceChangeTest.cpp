// Devices that go and defaults that move on a real server, while the engine's taps play.

#include "tests/e2e/support/EndToEndTest.h"

namespace orvanta::test {

namespace {

constexpr Seconds soon{10};

class DeviceChangeOnServer : public EndToEndTest {
protected:
    void SetUp() override {
        EndToEndTest::SetUp();
        graph().plug({.name = "headphones", .priority = 500});
        mixer().awaitDevice("speakers");
        mixer().awaitDevice("headphones");
        client_.open();
        graph().awaitPlayback(client_.pid());
        mixer().tap(client_.pid(), 0.5F);
        awaitTapped(client_.pid());
    }

    [[nodiscard]] AudioTapManager& manager() { return mixer().manager(); }

    void awaitDeviceOfTap(const std::optional<std::string>& uid) {
        EXPECT_TRUE(eventually(soon, [&] {
            return manager().getOutputDeviceUID(client_.pid()) == uid &&
                   manager().getCallbackCount(client_.pid()) > 0;
        }));
    }

    void expectHeardOn(const std::string& device) {
        awaitTapped(client_.pid());
        const GraphObject stream = graph().awaitPlayback(client_.pid());
        expectSignal(client_.noise(), Sound::halved, stream.id, device);
    }

    StreamClient client_;
};

TEST_F(DeviceChangeOnServer, MovesATapToTheDefaultWhenItsChosenDeviceGoes) {
    ASSERT_TRUE(manager().routeToDevice(client_.pid(), "headphones"));
    expectHeardOn("headphones");
    graph().unplug("headphones");
    awaitDeviceOfTap(std::nullopt);
    expectHeardOn("speakers");
    EXPECT_FLOAT_EQ(manager().getVolume(client_.pid()).value_or(0), 0.5F);
}

TEST_F(DeviceChangeOnServer, TakesTapsThatFollowTheDefaultAlong) {
    graph().chooseDefault("headphones");
    ASSERT_TRUE(eventually(
        soon, [&] { return mixer().logText().find("Rebuilding PID") != std::string::npos; }));
    awaitDeviceOfTap(std::nullopt);
    expectHeardOn("headphones");
}

TEST_F(DeviceChangeOnServer, LeavesTapsWithAChosenDeviceWhereTheyAre) {
    ASSERT_TRUE(manager().routeToDevice(client_.pid(), "speakers"));
    graph().chooseDefault("headphones");
    ASSERT_TRUE(eventually(soon, [&] {
        return mixer().logText().find("Default output changed: speakers → headphones") !=
               std::string::npos;
    }));
    expectHeardOn("speakers");
    awaitDeviceOfTap("speakers");
}

} // namespace

} // namespace orvanta::test
