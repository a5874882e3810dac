// The program itself, as a user starts it.

#include "cli/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>
#include <sys/wait.h>

namespace orvanta::cli {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::Eq;
using testing::HasSubstr;
using testing::Not;

struct Outcome {
    int exitCode = -1;
    std::string output;
};

/// Runs the program in a shell; what it says on standard error is part of the output.
Outcome run(const std::string& arguments, const std::string& environment = "") {
    const std::string command = environment + " '" AUDIO_MIXER_CLI "' " + arguments + " 2>&1";
    FILE* const pipe = popen(command.c_str(), "r");
    Outcome outcome;
    if (pipe == nullptr)
        return outcome;
    std::array<char, 4096> chunk{};
    for (std::size_t got = 0; (got = fread(chunk.data(), 1, chunk.size(), pipe)) > 0;)
        outcome.output.append(chunk.data(), got);
    const int status = pclose(pipe);
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

TEST(AudioMixerCLI, ListsProcessesAndDevices) {
    const auto listed = run("--server embedded list");
    EXPECT_EQ(listed.exitCode, kExitSuccess);
    EXPECT_THAT(listed.output, AllOf(ContainsRegex("101 +yes +Demo Music +com.meridane"),
                                     ContainsRegex("101 +yes .*Demo Music"),
                                     ContainsRegex("102 +yes .*Demo Speech"),
                                     ContainsRegex("[*] .*48000 Hz +100 % .*embedded-speakers")));
}

TEST(AudioMixerCLI, TapsAProcessAndShowsItsLevels) {
    const auto tapped =
        run("--server embedded tap 101 --volume 1.5 --limiter --seconds 0.4 --interval 0.2");
    EXPECT_EQ(tapped.exitCode, kExitSuccess);
    EXPECT_THAT(tapped.output, AllOf(ContainsRegex("peak +-[0-9.]+ dB .*callbacks [1-9]"),
                                     HasSubstr("Process 101 plays on its own again.")));
}

TEST(AudioMixerCLI, AMutedProcessShowsSilence) {
    const auto tapped = run("--server embedded tap 101 --mute --seconds 2 --interval 2");
    EXPECT_THAT(tapped.output, ContainsRegex("peak +-inf dB"));
}

TEST(AudioMixerCLI, PlaysOnTheDeviceThatIsNamed) {
    const auto tapped =
        run("--server embedded --verbose tap 101 --device embedded-headphones --seconds 0.4");
    EXPECT_EQ(tapped.exitCode, kExitSuccess);
    EXPECT_THAT(tapped.output, HasSubstr("Routed PID 101 to device: embedded-headphones"));
}

TEST(AudioMixerCLI, SaysInOneSentenceThatThereIsNoSuchDevice) {
    const auto refused = run("--server embedded tap 101 --device nowhere");
    EXPECT_EQ(refused.exitCode, kExitFailure);
    EXPECT_THAT(refused.output,
                Eq("AudioMixerCLI: cannot play on the device 'nowhere': Audio device creation "
                   "failed: 560227702 (there is no such device).\n"));
}

TEST(AudioMixerCLI, SaysInOneSentenceThatAProcessHasNoAudio) {
    const auto refused = run("--server embedded tap 999");
    EXPECT_EQ(refused.exitCode, kExitFailure);
    EXPECT_THAT(refused.output, Eq("AudioMixerCLI: cannot tap process 999: No audio process found "
                                   "for PID 999.\n"));
}

TEST(AudioMixerCLI, EndsInGoodOrderWhenNobodyReadsItAnyMore) {
    const auto cut = run("--server embedded tap 101 --seconds 60 --interval 0.05 | head -n 1");
    EXPECT_THAT(cut.output, HasSubstr("Tapped process 101"));
}

TEST(AudioMixerCLI, SaysInOneSentenceThatNoServerAnswers) {
    const auto refused =
        run("list", "PIPEWIRE_RUNTIME_DIR=/nonexistent XDG_RUNTIME_DIR=/nonexistent");
    EXPECT_EQ(refused.exitCode, kExitNoServer);
    EXPECT_THAT(refused.output, HasSubstr("no audio server answers"));
}

TEST(AudioMixerCLI, ShowsTheLogOnlyWhenAsked) {
    const std::string tap = "--server embedded tap 101 --seconds 0";
    EXPECT_THAT(run(tap).output, Not(HasSubstr("Audio pipeline active")));
    EXPECT_THAT(run("--verbose " + tap).output, HasSubstr("Audio pipeline active for PID 101"));
}

TEST(AudioMixerCLI, HelpsAndComplainsWithItsExitCodes) {
    const auto help = run("--help");
    EXPECT_EQ(help.exitCode, kExitSuccess);
    EXPECT_THAT(help.output, AllOf(HasSubstr("list"), HasSubstr("tap"), HasSubstr("Exit codes")));
    EXPECT_EQ(run("").exitCode, kExitUsage);
    EXPECT_EQ(run("tap 1 --volume 9").exitCode, kExitUsage);
}

} // namespace
} // namespace orvanta::cli
