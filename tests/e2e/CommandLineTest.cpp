#include "tests/e2e/support/EndToEndTest.h"
#include "tests/support/FileContent.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/WavReader.h"

#include <algorithm>
#include <csignal>
#include <filesystem>

namespace orvanta::test {

namespace {

/// The program AudioMixerCLI as it is shipped, under the allocation and lock trap where there is
/// one.
class CommandLine : public EndToEndTest {
protected:
    void SetUp() override {
        EndToEndTest::SetUp();
        client_.open();
        stream_ = graph().awaitPlayback(client_.pid()).id;
    }

    std::unique_ptr<ChildProcess> startTap(const std::vector<std::string>& options) const {
#ifdef ORVANTA_REALTIME_TRAP_LIBRARY
        const ScopedEnvironment trapped(
            ScopedEnvironment::Variables{{"LD_PRELOAD", ORVANTA_REALTIME_TRAP_LIBRARY}});
#endif
        std::vector<std::string> command = {ORVANTA_CLI, "tap", std::to_string(client_.pid())};
        command.insert(command.end(), options.begin(), options.end());
        auto program = std::make_unique<ChildProcess>(ChildProcess::Launch{
            .command = command, .logFile = server_.directory() / "cli.log", .isTalkedTo = true});
        const std::string said = program->readLine(Seconds(10)).value_or("nothing");
        EXPECT_TRUE(said.starts_with("Tapped process")) << said;
        awaitTapped(client_.pid());
        // A line of levels comes when callbacks have run with the settings.
        EXPECT_TRUE(program->readLine(Seconds(10)));
        return program;
    }

    void expectOwnSound() const {
        awaitOnly(client_.pid(), "speakers");
        expectSignal(client_.noise(), Sound::own, stream_);
    }

    StreamClient client_;
    std::uint32_t stream_ = 0;
};

TEST_F(CommandLine, ListsProgramsAndDevices) {
    const std::string list = runToEnd({ORVANTA_CLI, "list"});

    EXPECT_NE(list.find(std::to_string(client_.pid())), std::string::npos) << list;
    EXPECT_NE(list.find("speakers"), std::string::npos) << list;
    EXPECT_NE(list.find("48000 Hz"), std::string::npos) << list;
}

TEST_F(CommandLine, TapsAndGivesBackWhenItsTimeIsOver) {
    const auto program = startTap({"--volume", "0.5", "--seconds", "4"});
    expectSignal(client_.noise(), Sound::halved, stream_);

    ASSERT_TRUE(program->waitForExit(Seconds(20)));
    EXPECT_EQ(program->exitCode(), 0);
    expectOwnSound();
}

TEST_F(CommandLine, GivesBackOnTermination) {
    const auto program = startTap({"--volume", "0.5", "--seconds", "60"});
    expectSignal(client_.noise(), Sound::halved, stream_);

    program->signal(SIGTERM);
    ASSERT_TRUE(program->waitForExit(Seconds(10)));
    EXPECT_EQ(program->exitCode(), 0);
    expectOwnSound();
}

TEST_F(CommandLine, LeavesTheProgramItsOwnSoundWhenItIsKilled) {
    const auto program = startTap({"--volume", "0.5", "--seconds", "60"});
    expectSignal(client_.noise(), Sound::halved, stream_);

    program->kill();
    expectOwnSound();
}

TEST_F(CommandLine, RunsEveryProcessorWithoutAllocatingOrLockingOnTheAudioThread) {
    const auto program = startTap({"--volume", "0.5", "--balance", "0.3", "--limiter", "--gate",
                                   "-50", "--seconds", "60", "--interval", "0.2"});
    letTimePass(Seconds(1.5));
    EXPECT_TRUE(program->isRunning());

    program->signal(SIGINT);
    ASSERT_TRUE(program->waitForExit(Seconds(10)));
    EXPECT_EQ(program->exitCode(), 0);
    expectOwnSound();
}

TEST_F(CommandLine, RecordsBothSidesUntilItIsTerminated) {
    const TemporaryDirectory folder;
    const auto program = startTap({"--volume", "0.5", "--seconds", "60", "--interval", "0.2",
                                   "--record", folder.path().string(), "--record-mode", "both"});
    // A line of levels every 0.2 s.
    for (int line = 0; line < 5; ++line)
        EXPECT_TRUE(program->readLine(Seconds(10)));
    program->signal(SIGTERM);
    ASSERT_TRUE(program->waitForExit(Seconds(10)));
    EXPECT_EQ(program->exitCode(), 0);

    std::vector<std::vector<float>> sides;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        sides.push_back(WavReader(entry.path()).samples());
    ASSERT_EQ(sides.size(), 2U);
    for (const auto& side : sides)
        EXPECT_GT(std::ranges::count_if(side, [](float sample) { return sample != 0.0F; }), 24000)
            << "a quarter of a second of stereo at least";
}

TEST_F(CommandLine, SaysWhyItCannotRecord) {
    const auto log = server_.directory() / "refused.log";
    ChildProcess program({.command = {ORVANTA_CLI, "tap", std::to_string(client_.pid()), "--record",
                                      std::string(ORVANTA_CLI) + "/folder", "--seconds", "60"},
                          .logFile = log});
    ASSERT_TRUE(program.waitForExit(Seconds(10)));
    EXPECT_EQ(program.exitCode(), 1);
    const std::string said = fileContent(log);
    EXPECT_NE(said.find("cannot record into"), std::string::npos) << said;
    EXPECT_NE(said.find("Not a directory"), std::string::npos) << said;
    expectOwnSound();
}

} // namespace

} // namespace orvanta::test
