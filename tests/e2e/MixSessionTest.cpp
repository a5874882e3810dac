#include "tests/e2e/support/EndToEndTest.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/WavReader.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace orvanta::test {

namespace {

namespace fs = std::filesystem;

using testing::AllOf;
using testing::HasSubstr;

/// Sessions of the program AudioMixerCLI as it is shipped, under the allocation and lock trap where
/// there is one, with settings in the server's own folder.
class MixSession : public EndToEndTest {
protected:
    void SetUp() override {
        EndToEndTest::SetUp();
        client_.open();
        stream_ = graph().awaitPlayback(client_.pid()).id;
    }

    std::unique_ptr<ChildProcess> start(const std::string& command) const {
#ifdef ORVANTA_REALTIME_TRAP_LIBRARY
        const ScopedEnvironment trapped(
            ScopedEnvironment::Variables{{"LD_PRELOAD", ORVANTA_REALTIME_TRAP_LIBRARY}});
#endif
        return std::make_unique<ChildProcess>(
            ChildProcess::Launch{.command = {"sh", "-c", "exec " ORVANTA_CLI " " + command},
                                 .logFile = server_.directory() / "mix.log",
                                 .isTalkedTo = true});
    }

    /// The answer to a command about the client.
    std::string ask(ChildProcess& session, const std::string& command,
                    const std::string& rest = "") const {
        session.writeLine(command + " " + std::to_string(client_.pid()) + " " + rest);
        return session.readLine(Seconds(20)).value_or("nothing");
    }

    static void quit(ChildProcess& session) {
        session.writeLine("quit");
        ASSERT_TRUE(session.waitForExit(Seconds(20)));
        EXPECT_EQ(session.exitCode(), 0);
    }

    void expectOwnSound() const {
        awaitOnly(client_.pid(), "speakers");
        expectSignal(client_.noise(), Sound::own, stream_);
    }

    /// What a program that is to be refused says, and its exit code.
    void expectRefused(const std::string& command, const ChildProcess& owner) const {
        const auto second = start(command + " 2>&1");
        EXPECT_EQ(second->readLine(Seconds(20)),
                  "AudioMixerCLI: a mixer runs in this session already (process " +
                      std::to_string(owner.pid()) + "); it has to end first.");
        ASSERT_TRUE(second->waitForExit(Seconds(20)));
        EXPECT_EQ(second->exitCode(), 4);
    }

    StreamClient client_;
    std::uint32_t stream_ = 0;
};

TEST_F(MixSession, MixesAPlayerFromItsTapToItsOwnSoundAgain) {
    graph().plug({.name = "headphones", .priority = 500});
    const TemporaryDirectory folder;
    const auto session = start("mix");

    EXPECT_THAT(ask(*session, "tap"), HasSubstr(" tapped=yes"));
    EXPECT_THAT(ask(*session, "volume", "0.5"), HasSubstr(" volume=0.5"));
    awaitTapped(client_.pid());
    expectSignal(client_.noise(), Sound::halved, stream_);

    EXPECT_THAT(ask(*session, "eq", "1K 6"), HasSubstr(" eq=\"0 0 0 0 0 6 0 0 0 0\""));
    EXPECT_GT(mixResidual("speakers", {{.pid = client_.pid(), .gain = 0.5F}}), 0.01)
        << "a band that is raised is heard";
    EXPECT_THAT(ask(*session, "eq", "flat"), HasSubstr(" eq=\"flat\""));

    EXPECT_THAT(ask(*session, "route", "headphones"), HasSubstr(" device=\"headphones\""));
    graph().await("the tap plays on the headphones", [&] {
        return mixResidual("headphones", {{.pid = client_.pid(), .gain = 0.5F}}) < rounding;
    });

    session->writeLine("folder " + folder.path().string());
    EXPECT_THAT(session->readLine(Seconds(20)).value_or("nothing"), HasSubstr("folder="));
    EXPECT_THAT(ask(*session, "record", "start"), HasSubstr(" recording=\""));
    letTimePass(Seconds(1));
    EXPECT_THAT(ask(*session, "record", "stop"), HasSubstr(" recorded=\""));

    quit(*session);
    expectOwnSound();
    const auto file = *fs::directory_iterator(folder.path());
    EXPECT_GT(std::ranges::count_if(WavReader(file.path()).samples(),
                                    [](float sample) { return sample != 0.0F; }),
              24000)
        << "a quarter of a second of stereo at least";
}

TEST_F(MixSession, HasItsTapsAndSettingsBackTheNextTime) {
    const auto first = start("mix");
    ask(*first, "tap");
    ask(*first, "volume", "0.5");
    ask(*first, "limiter", "on");
    quit(*first);
    expectOwnSound();

    const auto second = start("mix");
    EXPECT_THAT(ask(*second, "status"),
                AllOf(HasSubstr(" tapped=yes volume=0.5 "), HasSubstr(" limiter=on ")));
    ask(*second, "limiter", "off");
    awaitTapped(client_.pid());
    expectSignal(client_.noise(), Sound::halved, stream_);
    second->signal(SIGTERM);
    ASSERT_TRUE(second->waitForExit(Seconds(20)));
    EXPECT_EQ(second->exitCode(), 0);
    expectOwnSound();
}

/// A session in a life with players that come and go.
class MixSessionForLong : public MixSession {
protected:
    /// Longer than the longest time between two looks at what there is.
    static constexpr Seconds severalLooks{13.0};
    /// Gives up, while nothing plays and looks are rare.
    static constexpr Seconds twoLooks{30.0};

    void SetUp() override {
        MixSession::SetUp();
        session_ = start("mix");
    }

    void tapAtHalf() {
        ask(*session_, "tap");
        EXPECT_THAT(ask(*session_, "volume", "0.5"), HasSubstr(" volume=0.5"));
        awaitTapped(client_.pid());
    }

    void expectHalved() {
        awaitTapped(client_.pid());
        expectSignal(client_.noise(), Sound::halved, graph().awaitPlayback(client_.pid()).id);
    }

    [[nodiscard]] std::string statusOf(pid_t pid) const {
        session_->writeLine("status " + std::to_string(pid));
        return session_->readLine(Seconds(20)).value_or("nothing");
    }

    std::unique_ptr<ChildProcess> session_;
};

TEST_F(MixSessionForLong, TapsWhatStartsAndTapsItAnewWhenItReturns) {
    session_->writeLine("autotap on");
    ASSERT_TRUE(session_->readLine(Seconds(20)));
    awaitTapped(client_.pid(), twoLooks);
    EXPECT_THAT(ask(*session_, "volume", "0.5"), HasSubstr(" volume=0.5"));
    expectHalved();
    client_.kill();
    letTimePass(severalLooks);

    StreamClient next({.seed = 2});
    next.open();
    awaitTapped(next.pid(), twoLooks);
    EXPECT_THAT(statusOf(next.pid()), HasSubstr(" tapped=yes volume=1 "))
        << "it has been away, and begins anew";
    quit(*session_);
    awaitOnly(next.pid(), "speakers");
}

TEST_F(MixSessionForLong, GoesOnWithAPlayerThatIsBackBeforeItIsMissed) {
    tapAtHalf();
    client_.kill();
    StreamClient next({.seed = 2});
    next.open();
    awaitTapped(next.pid(), twoLooks);
    EXPECT_THAT(statusOf(next.pid()), HasSubstr(" tapped=yes volume=0.5 "));
    expectSignal(next.noise(), Sound::halved, graph().awaitPlayback(next.pid()).id);
    quit(*session_);
}

TEST_F(MixSessionForLong, LeavesAloneWhatReturnsWhileNothingIsTappedByItself) {
    tapAtHalf();
    client_.kill();
    letTimePass(severalLooks);

    StreamClient next({.seed = 2});
    next.open();
    letTimePass(severalLooks);
    EXPECT_THAT(statusOf(next.pid()), HasSubstr(" tapped=no"));
    awaitOnly(next.pid(), "speakers");
    quit(*session_);
}

TEST_F(MixSessionForLong, KeepsATapWhoseStreamIsClosedForAWhile) {
    tapAtHalf();
    client_.close();
    letTimePass(severalLooks);
    EXPECT_THAT(statusOf(client_.pid()), HasSubstr(" tapped=yes volume=0.5 "));
    client_.open();
    expectHalved();
    quit(*session_);
}

TEST_F(MixSessionForLong, KeepsATapWhoseStreamIsClosedForAMinuteSoak) {
    tapAtHalf();
    client_.close();
    letTimePass(Seconds(60));
    client_.open();
    expectHalved();
    quit(*session_);
}

TEST_F(MixSessionForLong, HasAStreamBackThatAnotherProgramMovesAway) {
    graph().plug({.name = "headphones", .priority = 500});
    tapAtHalf();
    const double moved = monotonicSeconds();
    graph().setMetadata("default", stream_, "target.object", "Spa:String", "headphones");
    graph().await("the stream has been moved or is back already", [&] {
        return !graph().metadata("default", stream_, "target.object") ||
               graph().metadata("default", stream_, "target.object") !=
                   std::optional<std::string>("headphones");
    });
    awaitTapped(client_.pid());
    std::cout << "back after " << (monotonicSeconds() - moved) * 1000 << " ms\n";
    expectHalved();
    quit(*session_);
}

TEST_F(MixSessionForLong, KeepsWhatIsStoredThroughARestartOfTheServer) {
    tapAtHalf();
    server_.killServer();
    letTimePass(severalLooks);
    EXPECT_THAT(statusOf(client_.pid()), HasSubstr(" tapped=yes volume=0.5 "));
    server_.startServer();
    server_.startSessionManager();
    server_.startPulseBridge();
    reconnectGraph();
    plugSpeakers();
    ASSERT_TRUE(client_.isRunning()) << "a player that connects again by itself";
    EXPECT_THAT(statusOf(client_.pid()), HasSubstr(" tapped=yes volume=0.5 "));
    client_.reconnect();
    client_.open();
    expectHalved();
    quit(*session_);
}

TEST_F(MixSession, IsTheOnlyOwnerUntilItEnds) {
    const auto owner = start("mix");
    EXPECT_THAT(ask(*owner, "tap"), HasSubstr(" tapped=yes"));
    expectRefused("mix", *owner);
    expectRefused("tap " + std::to_string(client_.pid()), *owner);
    EXPECT_THAT(runToEnd({ORVANTA_CLI, "list"}), HasSubstr("speakers"))
        << "who only looks is in nobody's way";

    owner->kill();
    expectOwnSound();
    const auto next = start("mix");
    EXPECT_THAT(ask(*next, "status"), HasSubstr(" tapped=yes"));
    quit(*next);
}

TEST_F(MixSession, LeavesASingleTapNothingOfItsSettings) {
    const auto session = start("mix");
    ask(*session, "tap");
    ask(*session, "volume", "1.5");
    quit(*session);

    const auto tap =
        start("tap " + std::to_string(client_.pid()) + " --volume 0.5 --seconds 60 --interval 0.2");
    ASSERT_TRUE(tap->readLine(Seconds(20)));
    awaitTapped(client_.pid());
    expectSignal(client_.noise(), Sound::halved, stream_);
    expectRefused("mix", *tap);
    tap->signal(SIGTERM);
    ASSERT_TRUE(tap->waitForExit(Seconds(20)));

    const auto next = start("mix");
    EXPECT_THAT(ask(*next, "status"), HasSubstr(" volume=1.5 "));
    quit(*next);
}

} // namespace

} // namespace orvanta::test
