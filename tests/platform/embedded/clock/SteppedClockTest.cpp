#include "platform/embedded/clock/SteppedClock.h"

#include "tests/platform/embedded/GainTap.h"

#include <gmock/gmock.h>

#include <chrono>

namespace orvanta::embedded {
namespace {

using namespace std::chrono_literals;
using test::GainTap;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

TEST(SteppedClock, OneSecondIsARatesWorthOfFrames) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice({.uid = "speakers", .framesPerCycle = 480});
    server.addProgram({.pid = 100, .source = constant(0.25F)});

    server.advance(1s);

    EXPECT_THAT(server.played(speakers, 1), SizeIs(48000));
    EXPECT_THAT(server.played(speakers, 1), Each(0.25F));
    EXPECT_EQ(server.nowNs(), 1'000'000'000U);
}

TEST(SteppedClock, SmallStepsAddUpToLargeOnes) {
    EmbeddedAudioServer server;
    const auto speakers =
        server.addDevice({.uid = "speakers", .sampleRate = 44100, .framesPerCycle = 512});

    for (int count = 0; count < 1000; ++count)
        server.advance(10ms);

    EXPECT_EQ(server.cycles(speakers), 441000U / 512);
}

TEST(SteppedClock, ACycleRunsOnceItsEndHasCome) {
    EmbeddedAudioServer server;
    const auto speakers =
        server.addDevice({.uid = "speakers", .sampleRate = 1000, .framesPerCycle = 10});
    server.advance(9ms);
    EXPECT_EQ(server.cycles(speakers), 0U);
    server.advance(1ms);
    EXPECT_EQ(server.cycles(speakers), 1U);
}

/// Writes down the device of every cycle.
class CycleOrder {
public:
    explicit CycleOrder(EmbeddedAudioServer& server) : server_(server) { cycles_.reserve(64); }

    void watch(AudioObjectID device) {
        AudioDeviceIOProcID proc = nullptr;
        EXPECT_EQ(server_.createIOProcID(device, {&CycleOrder::note, this}, proc), noErr);
        EXPECT_EQ(server_.startDevice(device, proc), noErr);
    }

    struct Cycle {
        AudioObjectID device = 0;
        double sampleTime = 0;
        std::uint64_t hostTime = 0;
    };

    [[nodiscard]] const std::vector<Cycle>& cycles() const { return cycles_; }

    [[nodiscard]] std::vector<AudioObjectID> devices() const {
        std::vector<AudioObjectID> devices;
        for (const Cycle& cycle : cycles_)
            devices.push_back(cycle.device);
        return devices;
    }

private:
    static OSStatus note(AudioObjectID device, const AudioTimeStamp* now, const AudioBufferList*,
                         const AudioTimeStamp*, AudioBufferList*, const AudioTimeStamp*,
                         void* clientData) {
        static_cast<CycleOrder*>(clientData)
            ->cycles_.push_back({device, now->mSampleTime, now->mHostTime});
        return noErr;
    }

    EmbeddedAudioServer& server_;
    std::vector<Cycle> cycles_;
};

TEST(SteppedClock, DevicesTakeTurnsAsTheirCyclesEnd) {
    EmbeddedAudioServer server;
    const auto slow = server.addDevice({.uid = "slow", .sampleRate = 1000, .framesPerCycle = 5});
    const auto fast = server.addDevice({.uid = "fast", .sampleRate = 1000, .framesPerCycle = 2});
    CycleOrder order(server);
    order.watch(slow);
    order.watch(fast);

    server.advance(10ms);

    EXPECT_THAT(order.devices(), ElementsAre(fast, fast, slow, fast, fast, slow, fast));
}

TEST(SteppedClock, TellsTheTimeOfEveryCycle) {
    EmbeddedAudioServer server;
    server.advance(1s);
    const auto device = server.addDevice({.uid = "x", .sampleRate = 1000, .framesPerCycle = 5});
    CycleOrder order(server);
    order.watch(device);

    server.step(device, 2);

    ASSERT_THAT(order.cycles(), SizeIs(2));
    EXPECT_EQ(order.cycles()[0].sampleTime, 0);
    EXPECT_EQ(order.cycles()[0].hostTime, 1'000'000'000U);
    EXPECT_EQ(order.cycles()[1].sampleTime, 5);
    EXPECT_EQ(order.cycles()[1].hostTime, 1'005'000'000U);
    EXPECT_EQ(server.nowNs(), 1'010'000'000U);
}

TEST(SteppedClock, OthersCatchUpWithADeviceThatRanAhead) {
    EmbeddedAudioServer server;
    const auto first = server.addDevice({.uid = "1", .sampleRate = 1000, .framesPerCycle = 10});
    const auto second = server.addDevice({.uid = "2", .sampleRate = 1000, .framesPerCycle = 10});
    server.step(first, 5);
    server.advance(10ms);
    EXPECT_EQ(server.cycles(first), 6U);
    EXPECT_EQ(server.cycles(second), 6U);
}

TEST(SteppedClock, ANewRateHoldsFromTheNextCycle) {
    EmbeddedAudioServer server;
    const auto device = server.addDevice({.uid = "x", .sampleRate = 1000, .framesPerCycle = 10});
    server.advance(100ms);
    server.setSampleRate(device, 2000);
    server.advance(100ms);
    EXPECT_EQ(server.cycles(device), 10U + 20U);
}

TEST(SteppedClock, CallsIOProcsAtRestUnlessToldOtherwise) {
    for (const bool rests : {false, true}) {
        EmbeddedAudioServer server({.restsWhenStepped = rests});
        const auto speakers = server.addDevice({.uid = "speakers"});
        const auto music = server.addProgram({.pid = 1, .playing = false});
        GainTap tap(server, {music}, "speakers");
        tap.atRest = true;
        tap.start();
        server.step(speakers, 5);
        EXPECT_EQ(tap.calls(), rests ? 1U : 5U);
        EXPECT_EQ(tap.restQuestions(), rests ? 4U : 0U);
    }
}

TEST(SteppedClock, AnIOProcAtRestWakesWithItsProgramAndAtEveryStart) {
    EmbeddedAudioServer server({.restsWhenStepped = true});
    const auto speakers = server.addDevice({.uid = "speakers"});
    const auto music = server.addProgram({.pid = 1});
    GainTap tap(server, {music}, "speakers");
    tap.atRest = true;
    tap.start();
    server.step(speakers, 3);
    EXPECT_EQ(tap.calls(), 3U);
    server.pauseProgram(music);
    server.step(speakers, 3);
    EXPECT_EQ(tap.calls(), 3U);
    tap.atRest = false;
    server.step(speakers, 2);
    EXPECT_EQ(tap.calls(), 5U);
    tap.atRest = true;
    tap.stop();
    tap.start();
    server.step(speakers, 3);
    EXPECT_EQ(tap.calls(), 6U);
    server.resumeProgram(music);
    server.step(speakers);
    EXPECT_EQ(tap.calls(), 7U);
}

} // namespace
} // namespace orvanta::embedded
