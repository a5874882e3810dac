// The model with everything that it makes for itself, on an audio server in virtual time.

#include "core/model/MixerViewModel.h"
#include "platform/embedded/EmbeddedAudioServer.h"
#include "platform/embedded/EmbeddedWorkspace.h"
#include "tests/support/PlatformFakes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint32_t kFrames = 512;

class TheWholeMixer : public testing::Test, public PlatformFakes {
protected:
    TheWholeMixer() {
        speakers = addDevice("speakers");
        headphones = addDevice("headphones");
    }

    ~TheWholeMixer() override { stop(); }

    AudioObjectID addDevice(const std::string& uid) {
        return server.addDevice({.uid = uid, .name = uid, .framesPerCycle = kFrames});
    }

    /// A program that plays a constant half.
    AudioObjectID addPlayer(std::int32_t pid) {
        processTable.names[pid] = "player";
        return server.addProgram({.pid = pid,
                                  .name = "Player",
                                  .bundleIdentifier = "com.player",
                                  .source = embedded::constant(0.5F)});
    }

    void start() {
        model = MixerViewModel::create(platformWith(server, desktop));
        runLoop.runUntilIdle();
    }

    void stop() {
        model.reset();
        HotkeyManager::releaseCurrent();
    }

    /// Cycles for the devices while the main run loop's time passes.
    void play(Seconds time) {
        for (Seconds passed{0}; passed < time; passed += Seconds(0.1)) {
            server.stepAll(10);
            runLoop.advance(Seconds(0.1));
        }
    }

    std::vector<float> nextCycle(AudioObjectID device) {
        server.clearPlayed(device);
        server.step(device);
        return server.played(device);
    }

    EmbeddedAudioServer server;
    EmbeddedWorkspace desktop{server};
    AudioObjectID speakers = 0;
    AudioObjectID headphones = 0;
    std::shared_ptr<MixerViewModel> model;
};

TEST_F(TheWholeMixer, TapsAPlayerThatStartsAndIsHeardThroughItsSettings) {
    start();
    model->autoTapEnabled.set(true);
    addPlayer(100);
    runLoop.advance(10s);
    ASSERT_TRUE(model->isTapped(100)) << "a refresh period later at most";
    play(0.5s);
    EXPECT_THAT(nextCycle(speakers), Each(0.5F));
    EXPECT_EQ(model->audioLevel(100), 0.5F);
    model->setVolume(100, 0.5F);
    EXPECT_THAT(nextCycle(speakers), Each(0.25F));
    model->toggleMute(100);
    EXPECT_THAT(nextCycle(speakers), Each(0.0F));
    model->toggleMute(100);
    model->routeApp(100, "headphones");
    EXPECT_THAT(nextCycle(headphones), Each(0.25F));
    EXPECT_THAT(nextCycle(speakers), Each(0.0F));
}

TEST_F(TheWholeMixer, ForgetsAPlayerThatQuitsAndTapsItsNextRunAnew) {
    start();
    model->autoTapEnabled.set(true);
    const auto player = addPlayer(100);
    runLoop.advance(10s);
    model->setVolume(100, 0.25F);
    server.exitProgram(player);
    runLoop.advance(10s);
    EXPECT_THAT(model->tappedPIDs.get(), IsEmpty());
    EXPECT_TRUE(server.holdings().taps.empty());
    addPlayer(101);
    runLoop.advance(10s);
    EXPECT_THAT(model->tappedPIDs.get(), ElementsAre(101));
    EXPECT_EQ(model->volume(101), 1.0F);
}

TEST_F(TheWholeMixer, LeavesAPlayerAloneThatReturnsWhileNobodyTapsByItself) {
    start();
    const auto player = addPlayer(100);
    runLoop.advance(10s);
    model->toggleTap(model->audioApps.get().front());
    server.exitProgram(player);
    runLoop.advance(10s);
    addPlayer(101);
    runLoop.advance(20s);
    ASSERT_THAT(model->audioApps.get(), SizeIs(1));
    EXPECT_THAT(model->tappedPIDs.get(), IsEmpty());
    EXPECT_THAT(nextCycle(speakers), Each(0.5F));
}

TEST_F(TheWholeMixer, HasItsTapsBackAfterARestart) {
    addPlayer(100);
    start();
    model->toggleTap(model->audioApps.get().front());
    model->setVolume(100, 0.5F);
    model->routeApp(100, "headphones");
    stop();
    EXPECT_THAT(nextCycle(speakers), Each(0.5F)) << "on its own again";
    start();
    EXPECT_TRUE(model->isTapped(100)) << "by the first pass";
    EXPECT_THAT(nextCycle(headphones), Each(0.25F));
    EXPECT_TRUE(log.has(LogLevel::info, "Restored tap for 'Player' (com.player) vol=0.500000"));
}

TEST_F(TheWholeMixer, GivesATapThatIsNeverCalledTwoMoreChances) {
    addPlayer(100);
    start();
    model->toggleTap(model->audioApps.get().front());
    // Not one cycle: the audio system has forgotten the callback.
    const auto rebuilt = [&] {
        std::size_t lines = 0;
        for (const std::string& text : log.texts())
            lines += text.starts_with("Rebuilt dead tap for 'Player' (PID 100)") ? 1U : 0U;
        return lines;
    };
    runLoop.advance(19s);
    EXPECT_EQ(rebuilt(), 0U);
    runLoop.advance(2s);
    EXPECT_EQ(rebuilt(), 1U);
    runLoop.advance(20s);
    EXPECT_EQ(rebuilt(), 2U);
    runLoop.advance(600s);
    EXPECT_EQ(rebuilt(), 2U);
    EXPECT_EQ(server.holdings().taps.size(), 1U);
    EXPECT_TRUE(model->isTapped(100));
}

TEST_F(TheWholeMixer, KeepsATapThatIsRebuiltAtItsVolume) {
    addPlayer(100);
    start();
    model->toggleTap(model->audioApps.get().front());
    model->setVolume(100, 0.5F);
    runLoop.advance(21s);
    EXPECT_THAT(log.texts(), Contains("Rebuilt dead tap for 'Player' (PID 100)"));
    EXPECT_THAT(nextCycle(speakers), Each(0.25F));
}

TEST_F(TheWholeMixer, MakesATapAnewThatDeliversSilenceWhileAViewIsOpen) {
    processTable.names[100] = "player";
    server.addProgram({.pid = 100, .name = "Player", .source = embedded::constant(0.0F)});
    start();
    model->toggleTap(model->audioApps.get().front());
    std::vector<std::string> lines;
    model->setDiagnosticSink([&](std::string_view line) { lines.emplace_back(line); });
    model->setPopoverVisible(true);
    play(130s);
    EXPECT_THAT(lines, Contains("🔄 RETAP OK pid=100 vol=1.0 muted=false device=default\n"));
    EXPECT_EQ(server.holdings().taps.size(), 1U);
}

TEST_F(TheWholeMixer, FollowsADeviceThatGoesAndKeepsWhatTheUserChose) {
    addPlayer(100);
    start();
    model->toggleTap(model->audioApps.get().front());
    model->setVolume(100, 0.5F);
    model->routeApp(100, "headphones");
    server.removeDevice(headphones);
    runLoop.advance(1s);
    EXPECT_THAT(nextCycle(speakers), Each(0.25F));
}

} // namespace
} // namespace orvanta::test
