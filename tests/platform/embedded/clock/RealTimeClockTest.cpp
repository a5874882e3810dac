#include "platform/embedded/clock/RealTimeClock.h"

#include "tests/platform/embedded/GainTap.h"

#include <gmock/gmock.h>

#include <chrono>
#include <thread>

namespace orvanta::embedded {
namespace {

using namespace std::chrono_literals;
using test::GainTap;

/// Polls; the bound is for machines that are very busy.
template <typename Condition>
bool becomesTrue(Condition condition) {
    const auto giveUp = std::chrono::steady_clock::now() + 20s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > giveUp)
            return false;
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

/// True when the clock has gone to sleep: it looks for work no more.
bool fallsAsleep(const EmbeddedAudioServer& server) {
    return becomesTrue([&] {
        const std::uint64_t before = server.clockPasses();
        std::this_thread::sleep_for(60ms);
        return server.clockPasses() == before;
    });
}

class RealTime : public testing::Test {
protected:
    EmbeddedAudioServer server;
    AudioObjectID speakers = server.addDevice({.uid = "speakers", .framesPerCycle = 480});
};

TEST_F(RealTime, KeepsTheRateOfTheDevice) {
    server.addProgram({.pid = 100, .source = constant(0.5F)});
    const auto start = std::chrono::steady_clock::now();
    server.startClock();
    EXPECT_TRUE(server.isClockRunning());
    std::this_thread::sleep_for(1s);
    server.stopClock();
    const Seconds elapsed = std::chrono::steady_clock::now() - start;

    const double frames = static_cast<double>(server.played(speakers, 0).size());
    // Never faster than real time but for the cycle that begins; slower only on a starved machine.
    EXPECT_LE(frames, elapsed.count() * 48000 + 480);
    EXPECT_GE(frames, 0.1 * 48000);
    EXPECT_FALSE(server.isClockRunning());
}

TEST_F(RealTime, StepsDoNothingWhileTheClockRuns) {
    server.startClock();
    server.step(speakers);
    server.stepAll();
    server.advance(10s);
    server.stopClock();
    EXPECT_EQ(server.cycles(speakers), 0U);
    server.step(speakers);
    EXPECT_EQ(server.cycles(speakers), 1U);
}

TEST_F(RealTime, VirtualTimeGoesOnWhereItWas) {
    server.advance(1s);
    server.startClock();
    EXPECT_GT(server.nowNs(), 0U);
    server.stopClock();
    EXPECT_EQ(server.nowNs(), 1'000'000'000U);
    server.advance(1s);
    EXPECT_EQ(server.cycles(speakers), 200U);
}

TEST_F(RealTime, CostsNothingWhileNothingNeedsACycle) {
    const auto music = server.addProgram({.pid = 100, .playing = false});
    server.startClock();
    EXPECT_TRUE(fallsAsleep(server));
    EXPECT_EQ(server.cycles(speakers), 0U);

    server.resumeProgram(music);
    EXPECT_TRUE(becomesTrue([&] { return server.cycles(speakers) > 3; }));
    server.pauseProgram(music);
    EXPECT_TRUE(fallsAsleep(server));
}

TEST_F(RealTime, AnIOProcGetsACycleSoonAndThenRestsUntilSoundReturns) {
    const auto music = server.addProgram({.pid = 100, .playing = false});
    GainTap tap(server, {music}, "speakers");
    tap.atRest = true;
    server.startClock();
    tap.start();

    EXPECT_TRUE(becomesTrue([&] { return tap.calls() > 0; }));
    EXPECT_TRUE(fallsAsleep(server));
    EXPECT_EQ(tap.calls(), 1U);
    EXPECT_GT(tap.restQuestions(), 0U);
    server.resumeProgram(music);
    EXPECT_TRUE(becomesTrue([&] { return tap.calls() > 5; }));
    server.pauseProgram(music);
    EXPECT_TRUE(fallsAsleep(server));
}

TEST_F(RealTime, AnIOProcThatIsNotAtRestKeepsItsCycles) {
    const auto music = server.addProgram({.pid = 100, .playing = false});
    GainTap tap(server, {music}, "speakers");
    server.startClock();
    tap.start();
    EXPECT_TRUE(becomesTrue([&] { return tap.calls() > 20; }));
    tap.atRest = true;
    EXPECT_TRUE(fallsAsleep(server));
}

TEST_F(RealTime, ADeviceThatIsPluggedInTakesPart) {
    server.startClock();
    const auto headphones = server.addDevice({.uid = "headphones"});
    server.addProgram({.pid = 100, .source = tone(440), .device = "headphones"});
    EXPECT_TRUE(becomesTrue([&] { return server.cycles(headphones) > 3; }));
    EXPECT_EQ(server.cycles(speakers), 0U);
    server.removeDevice(headphones);
    EXPECT_TRUE(becomesTrue([&] { return server.cycles(speakers) > 3; }));
}

TEST_F(RealTime, StopReturnsOnlyAfterTheCallback) {
    struct Guarded {
        std::atomic<bool> inside = false;
        std::atomic<std::uint64_t> calls = 0;

        static OSStatus linger(AudioObjectID, const AudioTimeStamp*, const AudioBufferList*,
                               const AudioTimeStamp*, AudioBufferList*, const AudioTimeStamp*,
                               void* clientData) {
            auto& self = *static_cast<Guarded*>(clientData);
            self.inside = true;
            const auto until = std::chrono::steady_clock::now() + 500us;
            while (std::chrono::steady_clock::now() < until) {
            }
            ++self.calls;
            self.inside = false;
            return noErr;
        }
    };

    const auto fast = server.addDevice({.uid = "fast", .framesPerCycle = 48});
    server.startClock();
    for (int round = 0; round < 100; ++round) {
        auto guarded = std::make_unique<Guarded>();
        AudioDeviceIOProcID proc = nullptr;
        ASSERT_EQ(server.createIOProcID(fast, {&Guarded::linger, guarded.get()}, proc), noErr);
        ASSERT_EQ(server.startDevice(fast, proc), noErr);
        ASSERT_TRUE(becomesTrue([&] { return guarded->calls > 0; }));
        if (round % 2 == 0) {
            ASSERT_EQ(server.stopDevice(fast, proc), noErr);
        } else {
            ASSERT_EQ(server.destroyIOProcID(fast, proc), noErr);
        }
        ASSERT_FALSE(guarded->inside);
        // Whatever still called it would now touch memory that is gone.
        guarded.reset();
    }
}

/// Stops and destroys from inside the IOProc, which may not be done but must not hang.
struct SelfStopper {
    EmbeddedAudioServer& server;
    AudioObjectID device;
    AudioDeviceIOProcID proc = nullptr;
    std::atomic<int> calls = 0;

    static OSStatus stopItself(AudioObjectID, const AudioTimeStamp*, const AudioBufferList*,
                               const AudioTimeStamp*, AudioBufferList*, const AudioTimeStamp*,
                               void* clientData) {
        auto& self = *static_cast<SelfStopper*>(clientData);
        // Breaks the rule on purpose, so out of the section that would notice.
        if (orvantaRealTimeSectionLeft != nullptr)
            orvantaRealTimeSectionLeft();
        self.server.stopDevice(self.device, self.proc);
        self.server.step(self.device);
        if (orvantaRealTimeSectionEntered != nullptr)
            orvantaRealTimeSectionEntered();
        ++self.calls;
        return noErr;
    }
};

TEST_F(RealTime, AnIOProcMayStopItself) {
    for (const bool realTime : {false, true}) {
        SelfStopper stopper{server, speakers};
        ASSERT_EQ(
            server.createIOProcID(speakers, {&SelfStopper::stopItself, &stopper}, stopper.proc),
            noErr);
        ASSERT_EQ(server.startDevice(speakers, stopper.proc), noErr);
        if (realTime) {
            server.startClock();
            EXPECT_TRUE(becomesTrue([&] { return stopper.calls > 0; }));
            EXPECT_TRUE(fallsAsleep(server));
            server.stopClock();
        } else {
            server.step(speakers, 3);
        }
        EXPECT_EQ(stopper.calls, 1);
        EXPECT_EQ(server.destroyIOProcID(speakers, stopper.proc), noErr);
    }
}

TEST_F(RealTime, AnIOProcMayStopAnotherOfTheSameCycle) {
    SelfStopper first{server, speakers};
    GainTap second(server, {}, "speakers");
    ASSERT_EQ(server.createIOProcID(speakers, {&SelfStopper::stopItself, &first}, first.proc),
              noErr);
    auto* const firstProc = first.proc;
    first.device = second.aggregate();
    first.proc = second.proc();
    server.startDevice(speakers, firstProc);
    second.start();

    server.step(speakers, 2);

    EXPECT_EQ(second.calls(), 0U);
    EXPECT_EQ(first.calls, 2);
}

TEST_F(RealTime, StandsControlFromTwoThreads) {
    server.addDevice({.uid = "headphones", .framesPerCycle = 96});
    const auto music = server.addProgram({.pid = 100, .source = noise()});
    const auto speech =
        server.addProgram({.pid = 101, .source = tone(300), .device = "headphones"});
    server.startClock();
    const auto control = [&](AudioObjectID program, const std::string& uid, bool pausesPrograms) {
        for (int round = 0; round < 60; ++round) {
            GainTap tap(server, {program}, uid, 0.5F);
            tap.start();
            server.setVolume(speakers, 0, static_cast<float>(round) / 60);
            if (pausesPrograms) {
                server.pauseProgram(program);
                server.resumeProgram(program);
            }
            const auto extra = server.addDevice({});
            EXPECT_EQ(server.played(speakers).size() % 960, 0U);
            server.clearPlayed(speakers);
            tap.stop();
            server.removeDevice(extra);
        }
    };
    std::thread other([&] { control(speech, "headphones", true); });
    control(music, "speakers", false);
    other.join();
    server.stopClock();
    EXPECT_EQ(server.holdings(), EmbeddedAudioServer::Holdings{});
}

TEST_F(RealTime, TheServerMayGoWhileItRuns) {
    EmbeddedAudioServer other;
    other.addDevice({.uid = "speakers"});
    other.addProgram({.pid = 1, .source = tone(440)});
    other.startClock();
    EXPECT_TRUE(becomesTrue([&] { return other.clockPasses() > 2; }));
}

} // namespace
} // namespace orvanta::embedded
