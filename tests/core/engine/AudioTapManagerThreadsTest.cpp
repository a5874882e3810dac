// Control operations from several threads while callbacks run. Says most under the thread
// sanitizer and with the allocation and lock trap.

#include "tests/support/EngineRig.h"
#include "tests/support/RenderRig.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>

namespace orvanta::test {
namespace {

/// Turns every knob of a tap, differently for every number.
void turnEveryKnob(AudioTapManager& manager, std::int32_t pid, int number) {
    manager.setVolume(pid, 0.1F * static_cast<float>(number % 20));
    manager.setMuted(pid, number % 7 == 0);
    manager.setBalance(pid, 0.2F * static_cast<float>(number % 10) - 1.0F);
    manager.setNoiseGate(pid, number % 3 == 0, -60.0F + static_cast<float>(number % 60));
    manager.setLimiterEnabled(pid, number % 2 == 0);
    manager.setEQ(pid, number % 10, static_cast<float>(number % 25) - 12.0F);
    const auto& presets = CompressorPreset::allPresets();
    manager.setCompressor(pid, presets[static_cast<std::size_t>(number) % presets.size()].preset);
    manager.setNormalizationEnabled(pid, number % 5 != 0);
    manager.setStereoWidth(pid, 0.25F * static_cast<float>(number % 11));
    manager.setCrossfeed(pid, 0.1F * static_cast<float>(number % 11));
}

void readEverything(const AudioTapManager& manager, std::int32_t pid) {
    const auto level = manager.getAudioLevel(pid);
    if (level) {
        ASSERT_TRUE(std::isfinite(level->rms));
        ASSERT_TRUE(std::isfinite(level->peak));
    }
    for (const float reduction :
         manager.getCompressorGainReduction(pid).value_or(std::vector<float>()))
        ASSERT_TRUE(std::isfinite(reduction));
    ASSERT_TRUE(std::isfinite(manager.getNormalizationGain(pid).value_or(0.0F)));
    static_cast<void>(manager.getEQ(pid));
    static_cast<void>(manager.getCompressor(pid));
    static_cast<void>(manager.getDiagnostics(pid));
    static_cast<void>(manager.getCallbackCount(pid));
    static_cast<void>(manager.isNoiseGateOpen(pid));
    static_cast<void>(manager.getVolume(pid));
    static_cast<void>(manager.isRecording(pid));
    static_cast<void>(manager.recordingDuration(pid));
}

TEST(AudioTapManagerThreads, TwoThreadsChangeEverythingDuringAMillionCallbacks) {
    constexpr std::uint64_t callbacks = 1'000'000;
    auto speakers = EngineRig::speakersByDefault();
    speakers.framesPerCycle = 16;
    speakers.keepsPlayed = false;
    EngineRig rig({}, speakers);
    rig.server.setSource(rig.program, embedded::tone(440, 1.0F));
    ASSERT_TRUE(rig.manager->createTap(EngineRig::pid, rig.program));

    std::atomic<bool> isDone{false};
    std::atomic<unsigned> turns{0};
    std::thread turning([&] {
        for (int number = 0; !isDone.load(std::memory_order_relaxed); ++number) {
            turnEveryKnob(*rig.manager, EngineRig::pid, number);
            turns.fetch_add(1);
        }
    });
    std::thread reading([&] {
        for (int number = 0; !isDone.load(std::memory_order_relaxed); ++number) {
            readEverything(*rig.manager, EngineRig::pid);
            rig.manager->setVolume(EngineRig::pid, 1.0F + 0.01F * static_cast<float>(number % 9));
        }
    });
    for (std::uint64_t done = 0; done < callbacks; done += 1000)
        rig.server.step(rig.speakers, 1000);
    isDone.store(true);
    turning.join();
    reading.join();
    EXPECT_EQ(rig.manager->getCallbackCount(EngineRig::pid), callbacks);
    EXPECT_GT(turns.load(), 100U);
}

TEST(AudioTapManagerThreads, TapsComeAndGoWhileTheDeviceRunsInRealTime) {
    auto speakers = EngineRig::speakersByDefault();
    speakers.framesPerCycle = 32;
    speakers.keepsPlayed = false;
    EngineRig rig({}, speakers);
    const TemporaryDirectory folder;
    rig.server.startClock();
    std::atomic<bool> isDone{false};
    std::thread reading([&] {
        while (!isDone.load(std::memory_order_relaxed))
            readEverything(*rig.manager, EngineRig::pid);
    });
    for (int round = 0; round < 200; ++round) {
        ASSERT_TRUE(rig.manager->createTap(EngineRig::pid, rig.program));
        turnEveryKnob(*rig.manager, EngineRig::pid, round);
        rig.wallClock.time += std::chrono::seconds(1);
        rig.manager->startRecording(EngineRig::pid, "P", RecordingFormat::wav, folder.path(),
                                    RecordingMode::both);
        while (rig.manager->getCallbackCount(EngineRig::pid) == 0)
            std::this_thread::yield(); // every started IOProc gets its cycle
        if (round % 2 == 0)
            rig.manager->stopRecording(EngineRig::pid);
        rig.manager->removeTap(EngineRig::pid);
    }
    isDone.store(true);
    reading.join();
    rig.server.stopClock();
    EXPECT_TRUE(rig.server.holdings().taps.empty());
    EXPECT_EQ(rig.server.holdings().ioProcs, 0U);
}

TEST(AudioTapManagerThreads, TapsMoveBetweenDevicesWhileEveryKnobIsTurnedAndDevicesComeAndGo) {
    auto speakers = EngineRig::speakersByDefault();
    speakers.framesPerCycle = 32;
    speakers.keepsPlayed = false;
    EngineRig rig({}, speakers);
    auto headphones = speakers;
    headphones.uid = "headphones";
    rig.server.startClock();
    ASSERT_TRUE(rig.manager->createTap(EngineRig::pid, rig.program));
    std::atomic<bool> isDone{false};
    const auto untilDone = [&](auto body) {
        return std::thread([&isDone, body] {
            for (int number = 0; !isDone.load(std::memory_order_relaxed); ++number)
                body(number);
        });
    };
    auto turning = untilDone([&](int number) {
        turnEveryKnob(*rig.manager, EngineRig::pid, number);
        readEverything(*rig.manager, EngineRig::pid);
    });
    auto mainThread = untilDone([&](int) { rig.runLoop.advance(Seconds(0.1)); });
    for (int round = 0; round < 100; ++round) {
        const AudioObjectID device = rig.server.addDevice(headphones);
        rig.manager->routeToDevice(EngineRig::pid, "headphones");
        rig.server.setDefaultOutput(round % 2 == 0 ? device : rig.speakers);
        rig.server.removeDevice(device);
        rig.manager->routeToDevice(EngineRig::pid, std::nullopt);
    }
    isDone.store(true);
    turning.join();
    mainThread.join();
    rig.runLoop.advance(Seconds(10));
    EXPECT_TRUE(rig.manager->routeToDevice(EngineRig::pid, "speakers"));
    rig.server.stopClock();
    EXPECT_EQ(rig.server.holdings().aggregates.size(), 1U);
    EXPECT_EQ(rig.server.holdings().startedIOProcs, 1U);
}

TEST(AudioTapManagerThreads, ALimiterIsResetAndRetunedWhileItRuns) {
    RenderRig rig;
    rig.enableLimiter();
    LimiterProcessor& limiter = *rig.state().limiter.get();
    std::atomic<bool> isDone{false};
    std::thread resetting([&] {
        while (!isDone.load(std::memory_order_relaxed)) {
            limiter.reset();
            limiter.setCeiling(-6.0F);
        }
    });
    for (int cycle = 0; cycle < 20'000; ++cycle)
        rig.render(std::vector<float>(16, 2.0F));
    isDone.store(true);
    resetting.join();
    limiter.setCeiling(-6.0F); // in case the other thread never got its turn
    for (int cycle = 0; cycle < 10; ++cycle)
        rig.render(std::vector<float>(16, 2.0F));
    for (const float sample : rig.render(std::vector<float>(16, 2.0F)))
        EXPECT_NEAR(sample, 0.501F, 0.001F);
}

} // namespace
} // namespace orvanta::test
