#include "cli/Options.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace orvanta::cli {
namespace {

Parsed parse(const std::vector<const char*>& given) {
    std::vector<const char*> arguments{"AudioMixerCLI"};
    for (const char* const argument : given)
        arguments.push_back(argument);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    auto parsed = parseCommandLine(static_cast<int>(arguments.size()), arguments.data());
    testing::internal::GetCapturedStdout();
    testing::internal::GetCapturedStderr();
    return parsed;
}

TEST(CommandLine, ListsOnPipeWireUnlessToldOtherwise) {
    const auto parsed = parse({"list"});
    ASSERT_TRUE(parsed.options);
    EXPECT_EQ(parsed.options->subcommand, Subcommand::list);
    EXPECT_EQ(parsed.options->server, Server::pipewire);
    EXPECT_FALSE(parsed.options->isVerbose);
    EXPECT_EQ(parse({"--server", "embedded", "list"}).options->server, Server::embedded);
}

TEST(CommandLine, ReadsEverySettingOfATap) {
    const auto parsed =
        parse({"--verbose", "tap", "4711", "--volume", "1.5", "--mute", "--balance", "-0.5",
               "--limiter", "--gate", "-40", "--seconds", "2.5", "--interval", "0.1"});
    ASSERT_TRUE(parsed.options);
    EXPECT_EQ(parsed.options->subcommand, Subcommand::tap);
    EXPECT_TRUE(parsed.options->isVerbose);
    const TapOptions& tap = parsed.options->tap;
    EXPECT_EQ(tap.pid, 4711);
    EXPECT_EQ(tap.volume, 1.5F);
    EXPECT_TRUE(tap.isMuted);
    EXPECT_EQ(tap.balance, -0.5F);
    EXPECT_TRUE(tap.isLimited);
    EXPECT_EQ(tap.gateThreshold, -40.0F);
    EXPECT_EQ(tap.seconds, 2.5);
    EXPECT_EQ(tap.interval, 0.1);
}

TEST(CommandLine, ReadsEveryProcessorOfATap) {
    const auto parsed = parse({"tap", "4711", "--eq", "bass boost", "--compressor", "Night Mode",
                               "--normalize", "--width", "1.5", "--crossfeed", "0.3"});
    ASSERT_TRUE(parsed.options);
    const TapOptions& tap = parsed.options->tap;
    EXPECT_EQ(tap.eq, EQPreset::bassBoost);
    EXPECT_EQ(tap.compressor, CompressorPreset::nightMode);
    EXPECT_TRUE(tap.isNormalized);
    EXPECT_EQ(tap.stereoWidth, 1.5F);
    EXPECT_EQ(tap.crossfeed, 0.3F);
}

TEST(CommandLine, ReadsWhereToPlay) {
    EXPECT_EQ(parse({"tap", "4711", "--device", "usb:1"}).options->tap.deviceUID, "usb:1");
    EXPECT_EQ(parse({"tap", "4711"}).options->tap.deviceUID, std::nullopt);
}

TEST(CommandLine, ReadsWhereAndHowToRecord) {
    const auto record =
        parse({"tap", "4711", "--record", "/tmp/a folder"}).options.value().tap.record;
    EXPECT_EQ(record.folder, "/tmp/a folder");
    EXPECT_EQ(record.format, RecordingFormat::wav);
    EXPECT_EQ(record.mode, RecordingMode::processed);
    const auto both =
        parse({"tap", "4711", "--record", ".", "--record-format", "M4A", "--record-mode", "both"})
            .options.value()
            .tap.record;
    EXPECT_EQ(both.format, RecordingFormat::m4a);
    EXPECT_EQ(both.mode, RecordingMode::both);
}

TEST(CommandLine, ReadsTheRideOfAVolume) {
    const auto parsed = parse({"tap", "--ride", "0:1", "--ride", "2.5:0.25", "4711"});
    ASSERT_TRUE(parsed.options);
    EXPECT_EQ(parsed.options->tap.pid, 4711);
    EXPECT_EQ(parsed.options->tap.ride, (std::vector<VolumePoint>{{0.0, 1.0F}, {2.5, 0.25F}}));
}

TEST(CommandLine, LeavesWhatIsNotGivenToTheTap) {
    const auto tap = parse({"tap", "1"}).options->tap;
    EXPECT_EQ(tap.volume, std::nullopt);
    EXPECT_EQ(tap.balance, std::nullopt);
    EXPECT_EQ(tap.gateThreshold, std::nullopt);
    EXPECT_TRUE(tap.ride.empty());
    EXPECT_FALSE(tap.isMuted);
    EXPECT_FALSE(tap.isLimited);
    EXPECT_EQ(tap.eq, std::nullopt);
    EXPECT_EQ(tap.compressor, std::nullopt);
    EXPECT_FALSE(tap.isNormalized);
    EXPECT_EQ(tap.stereoWidth, std::nullopt);
    EXPECT_EQ(tap.crossfeed, std::nullopt);
    EXPECT_EQ(tap.record.folder, std::nullopt);
}

TEST(CommandLine, ReadsASessionOfTheMixer) {
    const auto session = parse({"--server", "embedded", "mix"}).options.value();
    EXPECT_EQ(session.subcommand, Subcommand::mix);
    EXPECT_FALSE(session.mixStays);
    EXPECT_TRUE(parse({"mix", "--stay"}).options->mixStays);
}

TEST(CommandLine, ReadsWhatOrvantaIsAskedFor) {
    const auto mute = parse({"intent", "toggle-mute"});
    ASSERT_TRUE(mute.options);
    EXPECT_EQ(mute.options->subcommand, Subcommand::intent);
    EXPECT_EQ(mute.options->intent.intent, Intent::toggleMute);
    EXPECT_EQ(parse({"intent", "list-apps"}).options.value().intent.intent, Intent::listApps);
    EXPECT_EQ(parse({"intent", "shortcuts"}).options.value().intent.intent, Intent::shortcuts);
    const auto volume = parse({"intent", "set-volume"}).options.value().intent;
    EXPECT_EQ(volume.intent, Intent::setVolume);
    EXPECT_EQ(volume.volume, std::nullopt);
}

TEST(CommandLine, ReadsEveryVolumeThatOrvantaIsAskedFor) {
    const auto asked = [](const char* volume) {
        return parse({"intent", "set-volume", volume}).options.value().intent.volume;
    };
    EXPECT_EQ(asked("0"), 0);
    EXPECT_EQ(asked("50"), 50);
    EXPECT_EQ(asked("300"), 300);
    EXPECT_EQ(asked("-5"), -5);
    EXPECT_EQ(asked("010"), 10);
    EXPECT_EQ(asked("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(asked("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
}

TEST(CommandLine, RefusesWhatMakesNoSense) {
    const std::vector<std::vector<const char*>> wrong{
        {},
        {"dance"},
        {"tap"},
        {"tap", "zero"},
        {"tap", "0"},
        {"tap", "-3"},
        {"tap", "1", "--volume", "2.1"},
        {"tap", "1", "--volume", "loud"},
        {"tap", "1", "--ride", "1"},
        {"tap", "1", "--ride", "1:3"},
        {"tap", "1", "--ride", "1:1", "--mute"},
        {"tap", "1", "--balance", "-2"},
        {"tap", "1", "--eq", "Loud"},
        {"tap", "1", "--compressor"},
        {"tap", "1", "--width", "3"},
        {"tap", "1", "--record"},
        {"tap", "1", "--record-format", "wav"},
        {"tap", "1", "--record", ".", "--record-format", "flac"},
        {"tap", "1", "--record", ".", "--record-mode", "wet"},
        {"tap", "1", "--crossfeed", "nan"},
        {"tap", "1", "--interval", "0"},
        {"tap", "1", "--seconds", "nan"},
        {"tap", "1", "--volume", "nan"},
        {"tap", "1", "--seconds", "inf"},
        {"--server", "other", "list"},
        {"list", "--nonsense"},
        {"mix", "101"},
        {"list", "mix"},
        {"intent"},
        {"intent", "dance"},
        {"intent", "toggle-mute", "50"},
        {"intent", "set-volume", "loud"},
        {"intent", "set-volume", ""},
        {"intent", "set-volume", "50%"},
        {"intent", "set-volume", "50.5"},
        {"intent", "set-volume", "0x10"},
        {"intent", "set-volume", " 5"},
        {"intent", "set-volume", "9223372036854775808"},
        {"intent", "set-volume", "-9223372036854775809"},
        {"intent", "set-volume", "50", "60"},
        {"intent", "toggle-mute", "list-apps"},
    };
    for (const auto& arguments : wrong) {
        const auto parsed = parse(arguments);
        EXPECT_FALSE(parsed.options) << (arguments.empty() ? "nothing" : arguments.back());
        EXPECT_EQ(parsed.exitCode, kExitUsage);
    }
}

TEST(CommandLine, HelpAndVersionAreNoFailures) {
    for (const char* const question : {"--help", "--version"}) {
        const auto parsed = parse({question});
        EXPECT_FALSE(parsed.options);
        EXPECT_EQ(parsed.exitCode, kExitSuccess);
    }
}

} // namespace
} // namespace orvanta::cli
