// Sessions of the program itself, on the embedded server.

#include "cli/Options.h"
#include "cli/mix/CommandTable.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FileContent.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;

using testing::AllOf;
using testing::Eq;
using testing::HasSubstr;

class AMixProgram : public testing::Test {
protected:
    struct Outcome {
        int exitCode = -1;
        std::string output;
        std::string errors;
    };

    /// Starts it in the test's folder, which is its home; `redirections` are the shell's.
    std::unique_ptr<ChildProcess> start(const std::string& options = "",
                                        const std::string& redirections = "") const {
        const std::string home = folder_.path();
        return std::make_unique<ChildProcess>(ChildProcess::Launch{
            .command = {"sh", "-c",
                        "cd '" + home + "' && HOME='" + home + "' XDG_CONFIG_HOME= exec '" +
                            AUDIO_MIXER_CLI + "' --server embedded mix " + options + " " +
                            redirections},
            .logFile = folder_.path() / "errors",
            .isTalkedTo = true});
    }

    /// Runs it to its end with these lines.
    Outcome run(const std::string& lines) const {
        std::ofstream(folder_.path() / "input") << lines;
        const auto program = start("", "<input >output");
        EXPECT_TRUE(program->waitForExit(Seconds(60)));
        return {program->exitCode().value_or(-1), fileContent(folder_.path() / "output"),
                fileContent(folder_.path() / "errors")};
    }

    static std::string ask(ChildProcess& program, const std::string& line) {
        program.writeLine(line);
        return program.readLine(Seconds(20)).value_or("nothing");
    }

    const TemporaryDirectory folder_;
};

TEST_F(AMixProgram, DoesEveryCommandOfItsTable) {
    const std::vector<std::string> lines{"list",
                                         "devices",
                                         "tap 101",
                                         "tap \"demo speech\"",
                                         "status 101",
                                         "route 102 embedded-headphones",
                                         "volume 101 150%",
                                         "mute 101",
                                         "unmute 101",
                                         "solo 101",
                                         "unsolo 101",
                                         "balance 101 -0.5",
                                         "eq 101 rock",
                                         "eq 101 1K 3",
                                         "compressor 101 vocal",
                                         "limiter 101 on",
                                         "normalize 101 on",
                                         "width 101 2",
                                         "crossfeed 101 0.5",
                                         "gate 101 on -50",
                                         "format m4a",
                                         "mode both",
                                         "folder tapes",
                                         "limit 60",
                                         "record 101 start",
                                         "levels 0.2",
                                         "wait 0.1",
                                         "record 101 stop",
                                         "reveal",
                                         "master 0.5",
                                         "muteall on",
                                         "muteall off",
                                         "autotap off",
                                         "profile save Day sun.max",
                                         "profiles",
                                         "profile apply day",
                                         "profile update day",
                                         "profile rename day Night",
                                         "profile delete Night",
                                         "untap 102",
                                         "help",
                                         "quit"};
    std::string input;
    for (const std::string& line : lines)
        input += line + "\n";
    const Outcome outcome = run(input + "dance\n");
    EXPECT_EQ(outcome.exitCode, cli::kExitSuccess) << "what comes behind quit is not read";
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(outcome.output, HasSubstr(folder_.path() / "tapes/Demo Music_processed_"));
    for (const cli::Command& command : cli::commandTable())
        EXPECT_TRUE(std::ranges::any_of(lines, [&](const std::string& line) {
            return line.starts_with(command.name);
        })) << command.name;
}

TEST_F(AMixProgram, SaysWhatIsWrongGoesOnAndFailsInTheEnd) {
    const Outcome outcome = run("volume 101 1\ntap 101\n");
    EXPECT_EQ(outcome.exitCode, cli::kExitFailure);
    EXPECT_EQ(outcome.errors, "\"Demo Music\" (101) is not tapped.\n");
    EXPECT_EQ(outcome.output, "pid=101 name=\"Demo Music\" tapped=yes\n");
}

TEST_F(AMixProgram, LeavesTheSettingsOfTheUserAlone) {
    run("tap 101\nvolume 101 0.5\n");
    EXPECT_FALSE(fs::exists(folder_.path() / ".config"));
}

TEST_F(AMixProgram, EndsInGoodOrderOnSignals) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        const auto program = start();
        EXPECT_EQ(ask(*program, "tap 101"), "pid=101 name=\"Demo Music\" tapped=yes");
        ask(*program, "folder " + std::to_string(number));
        ask(*program, "record 101 start");
        program->signal(number);
        EXPECT_THAT(program->readLine(Seconds(20)).value_or("nothing"), HasSubstr(" recorded=\""));
        ASSERT_TRUE(program->waitForExit(Seconds(20)));
        EXPECT_EQ(program->exitCode(), cli::kExitSuccess);
    }
}

TEST_F(AMixProgram, EndsOnASignalWhileItWaitsOrShowsLevels) {
    const auto waiting = start();
    EXPECT_EQ(ask(*waiting, "wait 3600"), "wait=3600");
    waiting->signal(SIGTERM);
    EXPECT_TRUE(waiting->waitForExit(Seconds(20)));
    const auto showing = start();
    ask(*showing, "tap 101");
    EXPECT_THAT(ask(*showing, "levels 3600"), HasSubstr(" peak="));
    showing->signal(SIGTERM);
    EXPECT_TRUE(showing->waitForExit(Seconds(20)));
    EXPECT_EQ(showing->exitCode(), cli::kExitSuccess);
}

TEST_F(AMixProgram, StaysBehindTheEndOfItsInputUntilASignalWhenItIsTold) {
    std::ofstream(folder_.path() / "input") << "tap 101\n";
    const auto program = start("--stay", "<input");
    EXPECT_EQ(program->readLine(Seconds(20)), "pid=101 name=\"Demo Music\" tapped=yes");
    EXPECT_FALSE(program->waitForExit(Seconds(1)));
    program->signal(SIGHUP);
    ASSERT_TRUE(program->waitForExit(Seconds(20)));
    EXPECT_EQ(program->exitCode(), cli::kExitSuccess);
}

TEST_F(AMixProgram, QuitsAlsoWhenItWouldStay) {
    std::ofstream(folder_.path() / "input") << "quit\n";
    const auto program = start("--stay", "<input");
    EXPECT_TRUE(program->waitForExit(Seconds(20)));
}

TEST_F(AMixProgram, GoesOnWhenNobodyReadsItsAnswers) {
    std::ofstream(folder_.path() / "input") << "help\nhelp\ntap 101\nstatus 101\n";
    const auto program = start("", "<input | true");
    EXPECT_TRUE(program->waitForExit(Seconds(20)));
}

/// What /proc says under this name of a process's first thread.
std::string threadStatus(pid_t pid, const std::string& name) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with(name + ":"))
            return line.substr(name.size() + 1);
    return {};
}

TEST_F(AMixProgram, SleepsWhileItWaitsForALine) {
    const auto program = start();
    ask(*program, "tap 101");
    ASSERT_TRUE(eventually(Seconds(20), [&] {
        return threadStatus(program->pid(), "State").find("sleeping") != std::string::npos;
    }));
    const std::string wakeUps = threadStatus(program->pid(), "voluntary_ctxt_switches");
    letTimePass(Seconds(1));
    EXPECT_EQ(threadStatus(program->pid(), "voluntary_ctxt_switches"), wakeUps);
}

TEST_F(AMixProgram, ForgivesMistakesOnATerminal) {
    // A terminal of its own, between it and the test.
    ChildProcess program(
        {.command = {"script", "-qec", std::string(AUDIO_MIXER_CLI) + " --server embedded mix",
                     "/dev/null"},
         .isTalkedTo = true});
    program.writeLine("dance");
    program.writeLine("quit");
    std::string said;
    while (const auto line = program.readLine(Seconds(20)))
        said += *line + "\n";
    EXPECT_THAT(said, AllOf(HasSubstr("> "), HasSubstr("There is no command \"dance\"")));
    ASSERT_TRUE(program.waitForExit(Seconds(20)));
    EXPECT_EQ(program.exitCode(), cli::kExitSuccess);
}

/// Lines that are nearly commands, and some that are nothing at all.
class Nonsense {
public:
    std::string line() {
        if (below(8) == 0)
            return bytes();
        const auto& table = cli::commandTable();
        const cli::Command& command = table[below(table.size())];
        // Not what ends the session, or takes its time.
        if (command.name == "quit")
            return "quit now";
        std::string text(command.name);
        const std::size_t count =
            below(4) == 0 ? below(5) : command.fewest + below(command.most - command.fewest + 1);
        const bool takesTime = command.name == "wait" || command.name == "levels";
        if (takesTime)
            return text + (below(2) == 0 ? " 0.01" : " much");
        for (std::size_t word = 0; word < count; ++word)
            text += " " + kWords[below(kWords.size())];
        return text;
    }

private:
    std::size_t below(std::size_t bound) { return random_() % bound; }

    /// None that is part of a path: a folder may be among what it means.
    std::string bytes() {
        std::string text;
        for (std::size_t left = below(60); left > 0; --left)
            if (const auto byte = static_cast<char>(below(256)); byte != '\n' && byte != '/')
                text += byte;
        return text;
    }

    inline static const std::vector<std::string> kWords{"101",
                                                        "102",
                                                        "101",
                                                        "102",
                                                        "999",
                                                        "\"Demo Music\"",
                                                        "demo",
                                                        "on",
                                                        "off",
                                                        "0.5",
                                                        "1",
                                                        "-1",
                                                        "1e9",
                                                        "nan",
                                                        "50%",
                                                        "Rock",
                                                        "flat",
                                                        "1K",
                                                        "-12",
                                                        "default",
                                                        "embedded-headphones",
                                                        "start",
                                                        "stop",
                                                        "wav",
                                                        "m4a",
                                                        "both",
                                                        "original",
                                                        "tapes",
                                                        "\"\"",
                                                        "\"",
                                                        "\\",
                                                        "moon",
                                                        "Evening",
                                                        "\xC3\xA4",
                                                        "\xF0\x9F\x8E\xB8"};

    /// Always the same lines.
    std::mt19937 random_{7};
};

TEST_F(AMixProgram, AnswersWhateverItIsTold) {
    const auto program = start("", "2>&1");
    Nonsense nonsense;
    for (int number = 0; number < 1500; ++number) {
        const std::string line = nonsense.line();
        const std::string mark = "\"mark" + std::to_string(number) + "\"";
        program->writeLine(line);
        program->writeLine("profile apply " + mark);
        int answers = 0;
        for (;; ++answers) {
            const auto answer = program->readLine(Seconds(20));
            ASSERT_TRUE(answer) << "after " << testing::PrintToString(line);
            if (answer->find("no profile " + mark) != std::string::npos)
                break;
        }
        const bool isBlank = line.find_first_not_of(" \t\r") == std::string::npos;
        EXPECT_TRUE(answers > 0 || isBlank) << testing::PrintToString(line);
    }
    EXPECT_THAT(ask(*program, "wait 0"), Eq("wait=0"));
}

} // namespace
} // namespace orvanta::test
