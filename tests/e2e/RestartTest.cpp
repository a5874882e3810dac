#include "tests/e2e/support/EndToEndTest.h"
#include "tests/e2e/support/GainTap.h"

#include <iostream>
#include <memory>

namespace orvanta::test {

namespace {

class Restart : public EndToEndTest {
protected:
    void expectTapped(StreamClient& client) {
        awaitTapped(client.pid());
        const GraphObject stream = graph().awaitPlayback(client.pid());
        expectSignal(client.noise(), Sound::halved, stream.id);
    }

    /// The devices go and come with the session manager, as hardware does, which is its charge.
    void restartSessionManager() {
        server_.killSessionManager();
        graph().unplug("speakers");
        server_.startSessionManager();
        plugSpeakers();
        letTimePass(passesTake);
    }

    void restartEverything() {
        server_.killServer();
        server_.startServer();
        server_.startSessionManager();
        server_.startPulseBridge();
        reconnectGraph();
        plugSpeakers();
    }
};

TEST_F(Restart, OfTheSessionManagerLeavesTheTapWorking) {
    StreamClient client;
    client.open();
    graph().awaitPlayback(client.pid());
    mixer().tap(client.pid(), 0.5F);
    expectTapped(client);

    restartSessionManager();

    expectTapped(client);
}

TEST_F(Restart, OfTheSessionManagerLeavesATapWorkingForStreamsOpenedLater) {
    StreamClient client;
    client.open();
    graph().awaitPlayback(client.pid());
    mixer().tap(client.pid(), 0.5F);
    expectTapped(client);

    restartSessionManager();
    client.close();
    client.open();

    expectTapped(client);
}

TEST_F(Restart, OfTheServerLetsARestartedPlayerBeTapped) {
    auto client = std::make_unique<StreamClient>();
    client->open();
    graph().awaitPlayback(client->pid());
    mixer().tap(client->pid(), 0.5F);
    expectTapped(*client);

    restartEverything();
    client = std::make_unique<StreamClient>();
    client->open();
    graph().awaitPlayback(client->pid());
    mixer().tap(client->pid(), 0.5F);

    expectTapped(*client);
}

TEST_F(Restart, OfThePulseBridgeLetsARestartedPlayerBeTapped) {
    const NoiseSignal noise(21);
    const auto file = noiseFile(noise);
    auto player = std::make_unique<RealPlayer>(PlayerKind::paplay, file, server_.directory());
    graph().awaitPlayback(player->pid());
    mixer().tap(player->pid(), 0.5F);
    awaitTapped(player->pid());

    server_.killPulseBridge();
    server_.startPulseBridge();
    player = std::make_unique<RealPlayer>(PlayerKind::paplay, file, server_.directory());
    const GraphObject stream = graph().awaitPlayback(player->pid());
    mixer().tap(player->pid(), 0.5F);
    awaitTapped(player->pid());

    expectSignal(noise, Sound::halved, stream.id);
}

class VanishingDevices : public EndToEndTest {
protected:
    [[nodiscard]] bool playsToATap(pid_t pid) const {
        for (const GraphObject& stream : graph().playbackNodes(pid))
            for (const std::string& target : graph().targets(stream.id))
                if (target.starts_with("orvanta-tap-"))
                    return true;
        return false;
    }
};

TEST_F(VanishingDevices, NeverLetATapSwallowUntappedPrograms) {
    StreamClient tapped({.seed = 1, .name = "tapped"});
    StreamClient untapped({.seed = 2, .name = "untapped"});
    tapped.open();
    untapped.open();
    graph().awaitPlayback(untapped.pid());
    graph().awaitPlayback(tapped.pid());
    mixer().awaitDevice("speakers");
    GainTap tap(mixer().hardware(), mixer().awaitProcess(tapped.pid()), "speakers", 0.5F);
    awaitTapped(tapped.pid());

    graph().unplug("speakers");
    const double unplugged = monotonicSeconds();
    double swallowed = unplugged;
    while (monotonicSeconds() < unplugged + 2.0) {
        if (playsToATap(untapped.pid()))
            swallowed = monotonicSeconds();
        letTimePass(Seconds(0.003));
    }
    std::cout << "without a device an untapped stream hung on a tap for "
              << (swallowed - unplugged) * 1000 << " ms\n";
    EXPECT_LE(swallowed - unplugged, 0.5);

    graph().plug({.name = "speakers"});
    const double plugged = monotonicSeconds();
    while (graph().defaultSink() != "speakers" || monotonicSeconds() < plugged + 1.0) {
        ASSERT_FALSE(playsToATap(untapped.pid()));
        ASSERT_LT(monotonicSeconds(), plugged + 10.0);
        letTimePass(Seconds(0.003));
    }
    awaitOnly(untapped.pid(), "speakers");
    untapped.close();
    mixer().awaitDevice("speakers");
    tap.moveTo("speakers");
    awaitTapped(tapped.pid());
    const GraphObject stream = graph().awaitPlayback(tapped.pid());
    expectSignal(tapped.noise(), Sound::halved, stream.id);
}

TEST_F(VanishingDevices, LeaveUntappedProgramsOnTheDeviceThatRemains) {
    graph().plug({.name = "headphones", .priority = 500});
    StreamClient tapped({.seed = 1, .name = "tapped"});
    StreamClient untapped({.seed = 2, .name = "untapped"});
    tapped.open();
    untapped.open();
    graph().awaitPlayback(untapped.pid());
    graph().awaitPlayback(tapped.pid());
    mixer().tap(tapped.pid(), 0.5F);
    awaitTapped(tapped.pid());

    graph().unplug("speakers");
    awaitOnly(untapped.pid(), "headphones");
}

} // namespace

} // namespace orvanta::test
