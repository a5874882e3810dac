// Whole sessions on the embedded server in real time, with their input and output in the test's
// hands.

#include "cli/AudioSystem.h"
#include "cli/MixCommand.h"
#include "platform/linux/defaults/SQLiteUserDefaults.h"
#include "platform/runloop/SystemWallClock.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Waiting.h"
#include "tests/support/WavReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

/// One end for the session, one for the test.
class Conversation {
public:
    Conversation() {
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends_) != 0)
            ADD_FAILURE() << "no socket pair";
        output_ = fdopen(dup(ends_[0]), "w");
    }

    ~Conversation() {
        std::fclose(output_);
        close(ends_[0]);
        close(ends_[1]);
    }

    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;

    [[nodiscard]] cli::Console console(bool isTerminal) const {
        return {.input = ends_[0], .output = output_, .errors = output_, .isTerminal = isTerminal};
    }

    void type(const std::string& text) const {
        ASSERT_EQ(::write(ends_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    void hangUp() const { shutdown(ends_[1], SHUT_WR); }

    /// All that was said, once this text has been.
    std::string await(const std::string& text) {
        EXPECT_TRUE(
            eventually(Seconds(20),
                       [&] {
                           char bytes[4096];
                           const ssize_t count = recv(ends_[1], bytes, sizeof bytes, MSG_DONTWAIT);
                           heard_.append(bytes, count > 0 ? static_cast<std::size_t>(count) : 0);
                           return heard_.find(text) != std::string::npos;
                       }))
            << text << " is not in " << heard_;
        return heard_;
    }

    /// From here on only what is said now.
    void forget() { heard_.clear(); }

private:
    int ends_[2] = {-1, -1};
    std::FILE* output_ = nullptr;
    std::string heard_;
};

class AWholeSession : public testing::Test {
protected:
    /// The exit code. Settings last from one to the next.
    int mix(const cli::Console& console, const cli::Options& options = {}) {
        cli::ConsoleLog consoleLog(&log_);
        SQLiteUserDefaults defaults({.file = folder_.path() / "settings.db", .domain = "test"},
                                    clock_, consoleLog);
        const auto system = cli::openAudioSystem(cli::Server::embedded, consoleLog);
        return cli::runMixCommand(system->platform(defaults), options, console, consoleLog);
    }

    /// What a session says to these lines.
    std::string heard(const std::string& lines) {
        Conversation conversation;
        conversation.type(lines + "dance\n");
        conversation.hangUp();
        EXPECT_EQ(mix(conversation.console(false)), cli::kExitFailure);
        return conversation.await("no command \"dance\"");
    }

    const TemporaryDirectory folder_;
    SystemWallClock clock_;
    RecordingLog log_;
};

TEST_F(AWholeSession, AnswersWithoutAPromptWhereNobodyTypes) {
    Conversation conversation;
    conversation.type("tap 101\nvolume 101 0.5\n");
    conversation.hangUp();
    EXPECT_EQ(mix(conversation.console(false)), cli::kExitSuccess);
    EXPECT_EQ(conversation.await("0.5"), "pid=101 name=\"Demo Music\" tapped=yes\n"
                                         "pid=101 name=\"Demo Music\" volume=0.5 muted=no\n");
}

TEST_F(AWholeSession, AsksForCommandsOnATerminal) {
    Conversation conversation;
    conversation.type("tap 101\n");
    conversation.hangUp();
    EXPECT_EQ(mix(conversation.console(true)), cli::kExitSuccess);
    EXPECT_EQ(conversation.await("> \n"), "> pid=101 name=\"Demo Music\" tapped=yes\n> \n");
}

TEST_F(AWholeSession, BringsTapsAndSettingsBackInTheNextOne) {
    heard("tap 101\nvolume 101 0.5\neq 101 Rock\nroute 101 embedded-headphones\nlimiter 101 on\n"
          "tap 102\nuntap 102\nautotap off\nprofile save Evening moon\n");
    EXPECT_THAT(heard("status 101\nstatus 102\nprofiles\n"),
                AllOf(HasSubstr("pid=101 name=\"Demo Music\" "
                                "identifier=\"com.meridane.orvanta.demo.music\" playing=yes "
                                "tapped=yes volume=0.5 "),
                      HasSubstr("eq=\"Rock\""), HasSubstr("limiter=on"),
                      HasSubstr("device=\"embedded-headphones\""), HasSubstr("tapped=no\n"),
                      HasSubstr("profile=\"Evening\" icon=moon applications=1 active=no\n")));
    heard("untap 101\n");
    EXPECT_THAT(heard("status 101\n"), HasSubstr(" tapped=no\n"));
}

TEST_F(AWholeSession, FinishesRecordingsWhenItEnds) {
    const std::string said =
        heard("tap 101\nfolder \"" + folder_.path().string() + "\"\nrecord 101 start\nwait 0.3\n");
    EXPECT_THAT(said, HasSubstr("recorded=\""));
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder_.path()))
        if (entry.path().extension() == ".wav")
            files.push_back(entry.path());
    ASSERT_EQ(files.size(), 1U);
    EXPECT_GT(WavReader(files[0]).samples().size(), 2U * 4800U) << "a tenth of a second at least";
}

TEST_F(AWholeSession, PrintsLevelsWhereNobodySits) {
    const std::string said = heard("tap 101\ntap 102\nlevels 1\n");
    std::size_t lines = 0;
    for (std::size_t at = 0; (at = said.find(" peak=", at)) != std::string::npos; ++at)
        ++lines;
    EXPECT_EQ(lines, 4U) << "two applications, each half second: " << said;
    EXPECT_THAT(said, HasSubstr("pid=101 name=\"Demo Music\" rms=-"));
}

TEST_F(AWholeSession, DrawsLevelsOverThemselvesUntilALineIsEntered) {
    Conversation conversation;
    int exitCode = -1;
    std::thread session([&] { exitCode = mix(conversation.console(true)); });
    conversation.type("tap 101\nlevels\n");
    conversation.await("\0338");
    conversation.type("\n");
    conversation.forget();
    conversation.type("volume 101 0.25\nlevels 0.2\nvolume 101 0.75\nquit\n");
    EXPECT_THAT(conversation.await("volume=0.75"),
                AllOf(HasSubstr("> pid=101 name=\"Demo Music\" volume=0.25"), HasSubstr(" dB")));
    session.join();
    EXPECT_EQ(exitCode, cli::kExitSuccess);
}

TEST_F(AWholeSession, TellsTheModelsDiagnosticsWhenItIsVerbose) {
    heard("tap 101\n");
    for (const bool isVerbose : {false, true}) {
        Conversation conversation;
        conversation.type("status 101\n");
        conversation.hangUp();
        log_.clear();
        cli::Options options;
        options.isVerbose = isVerbose;
        EXPECT_EQ(mix(conversation.console(false), options), cli::kExitSuccess);
        const auto texts = log_.texts();
        EXPECT_EQ(std::ranges::count_if(texts,
                                        [](const std::string& text) {
                                            return text.find("8Hz-bg") != std::string::npos;
                                        }),
                  isVerbose ? 1 : 0);
    }
}

TEST_F(AWholeSession, RefusesALineThatIsTooLongAndGoesOn) {
    std::string lines(10000, 'x');
    lines += "\ntap 101\n";
    EXPECT_THAT(heard(lines),
                AllOf(StartsWith("The line is too long.\n"), HasSubstr("tapped=yes")));
}

} // namespace
} // namespace orvanta::test
