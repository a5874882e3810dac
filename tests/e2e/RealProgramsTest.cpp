#include "core/dsp/FlushDenormals.h"
#include "tests/e2e/support/ChromiumTab.h"
#include "tests/e2e/support/EndToEndTest.h"
#include "tests/e2e/support/SignalMatch.h"
#include "tests/e2e/support/Tones.h"
#include "tests/support/WavFile.h"
#include "tests/support/reference/Equaliser.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <optional>

namespace orvanta::test {

namespace {

constexpr float halfVolume = 0.5F;
constexpr std::size_t band = 5;
constexpr float bandGain = 6;
constexpr double bandHertz = 1000;
/// Three octaves below: what the band leaves nearly alone.
constexpr double otherHertz = 125;
constexpr double amplitude = 0.2;
/// A hundred periods of the lower tone.
constexpr std::size_t wholePeriods = 38400;

double decibels(double ratio) {
    return 20 * std::log10(ratio);
}

/// What the band does to a frequency, by a plain equaliser that is fed with it.
double bandResponse(double hertz) {
    const FlushDenormals flush;
    reference::Equaliser equaliser(48000, 1);
    equaliser.setGain(band, bandGain);
    std::vector<float> samples = tones(std::array{hertz}, amplitude, 2 * wholePeriods);
    constexpr std::size_t block = 1024;
    for (std::size_t done = 0; done < samples.size(); done += block)
        equaliser.process(samples.data() + done, std::min(block, samples.size() - done), 0);
    return amplitudeAt(hertz, std::span<const float>(samples).subspan(wholePeriods)) / amplitude;
}

struct Program {
    std::string name;
    /// None for the browser.
    std::optional<PlayerKind> player;

    friend std::ostream& operator<<(std::ostream& stream, const Program& program) {
        return stream << program.name;
    }
};

class RealPrograms : public EndToEndTest, public testing::WithParamInterface<Program> {
protected:
    /// Starts the program and returns the process that plays.
    pid_t play(const std::filesystem::path& file) {
        if (GetParam().player) {
            player_.emplace(*GetParam().player, file, server_.directory());
            graph().awaitPlayback(player_->pid());
            return player_->pid();
        }
        tab_.emplace(file, server_.directory());
        return tab_->awaitAudioProcess(graph());
    }

    [[nodiscard]] std::filesystem::path tonesFile() const {
        auto path = server_.directory() / "tones.wav";
        const auto side = tones(std::array{bandHertz, otherHertz}, amplitude, signalFrames);
        writeWavFile(path, 48000, std::array{side, side});
        return path;
    }

    [[nodiscard]] std::string serialOfStream(pid_t pid) const {
        const auto streams = graph().playbackNodes(pid);
        return streams.size() == 1 ? streams[0].get("object.serial") : "";
    }

    /// The device carries the program's stream times the gain, and nothing else.
    void expectTheStreamTimes(double gain, pid_t pid) const {
        const GraphObject stream = graph().awaitPlayback(pid);
        const Capture capture = recordUndisturbed(stream.id, "speakers", halfASecond);
        for (std::size_t channel = 0; channel < 2; ++channel) {
            const auto match = findSignal(capture.channels[2 + channel], capture.channels[channel]);
            ASSERT_TRUE(match);
            EXPECT_NEAR(match->gain, gain, rounding);
            EXPECT_LE(match->residual, rounding);
        }
    }

    /// What the device carries is the file, as exactly as the program itself knows to play it.
    void expectTheFile(const NoiseSignal& noise, pid_t pid) const {
        const GraphObject stream = graph().awaitPlayback(pid);
        const Capture capture = recordUndisturbed(stream.id, "speakers", halfASecond);
        for (std::uint32_t channel = 0; channel < 2; ++channel) {
            const auto match =
                findSignal(capture.channels[2 + channel], noise.channel(channel, signalFrames));
            ASSERT_TRUE(match);
            std::cout << "gain " << match->gain << ", residual " << match->residual << "\n";
            EXPECT_NEAR(match->gain, 1, 1e-4);
            EXPECT_LE(match->residual, 1e-4);
        }
    }

    std::optional<RealPlayer> player_;
    std::optional<ChromiumTab> tab_;
};

TEST_P(RealPrograms, AreHeardAtTheVolumeOfTheirTap) {
    const NoiseSignal noise(11);
    const pid_t pid = play(noiseFile(noise));
    mixer().tap(pid, halfVolume);
    awaitTapped(pid);

    expectTheStreamTimes(static_cast<double>(halfVolume), pid);

    mixer().manager().removeTap(pid);
    awaitOnly(pid, "speakers");
    expectTheStreamTimes(1, pid);
    expectTheFile(noise, pid);
}

TEST_P(RealPrograms, AreHeardThroughABandOfTheEqualiser) {
    const pid_t pid = play(tonesFile());
    mixer().tap(pid, halfVolume);
    mixer().manager().setEQ(pid, static_cast<int>(band), bandGain);
    awaitTapped(pid);
    const std::uint64_t before = mixer().manager().getCallbackCount(pid);
    ASSERT_TRUE(eventually(Seconds(5),
                           [&] { return mixer().manager().getCallbackCount(pid) >= before + 2; }));

    const GraphObject stream = graph().awaitPlayback(pid);
    // The first periods belong to what the filter still remembers.
    const Capture capture = recordUndisturbed(stream.id, "speakers", 2 * wholePeriods);
    for (std::size_t channel = 0; channel < 2; ++channel) {
        const auto settled = [&](std::size_t recorded, double hertz) {
            return amplitudeAt(hertz, std::span<const float>(capture.channels[recorded])
                                          .subspan(wholePeriods, wholePeriods));
        };
        for (const double hertz : {bandHertz, otherHertz}) {
            const double expected = static_cast<double>(halfVolume) * bandResponse(hertz);
            const double heard = settled(2 + channel, hertz) / settled(channel, hertz);
            std::cout << hertz << " Hz: " << decibels(heard) << " dB, the processors' "
                      << decibels(expected) << " dB\n";
            EXPECT_NEAR(decibels(heard), decibels(expected), 0.01);
            EXPECT_NEAR(settled(channel, hertz), amplitude, 1e-4);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    EveryKind, RealPrograms,
    testing::Values(Program{"pwPlay", PlayerKind::pwPlay}, Program{"paplay", PlayerKind::paplay},
                    Program{"aplay", PlayerKind::aplay}, Program{"sox", PlayerKind::sox},
                    Program{"mpv", PlayerKind::mpv}, Program{"chromium", std::nullopt}),
    testing::PrintToStringParamName());

class ReopeningPrograms : public RealPrograms {};

TEST_P(ReopeningPrograms, StayTapped) {
    const NoiseSignal noise(12);
    const pid_t pid = play(noiseFile(noise));
    mixer().tap(pid, halfVolume);
    awaitTapped(pid);
    const std::string first = serialOfStream(pid);

    if (player_) {
        player_->reopen();
    } else {
        tab_->pause();
        graph().await(
            "the browser closes its stream", [&] { return graph().playbackNodes(pid).empty(); },
            Seconds(30));
        tab_->resume();
    }
    graph().await("the program has another stream", [&] {
        const std::string now = serialOfStream(pid);
        return !now.empty() && now != first;
    });

    awaitTapped(pid);
    expectTheStreamTimes(static_cast<double>(halfVolume), pid);
}

class ProgramsOnTwoDevices : public EndToEndTest {};

TEST_F(ProgramsOnTwoDevices, AreEachHeardOnTheirOwnAlone) {
    graph().plug({.name = "headphones", .priority = 500});
    mixer().awaitDevice("headphones");
    const auto file = noiseFile(NoiseSignal(13));
    const ChromiumTab tab(file, server_.directory());
    const RealPlayer player(PlayerKind::paplay, noiseFile(NoiseSignal(14)), server_.directory());
    const pid_t browser = tab.awaitAudioProcess(graph());
    graph().awaitPlayback(player.pid());
    mixer().tap(browser, 0.5F);
    mixer().tap(player.pid(), 0.25F);

    ASSERT_TRUE(mixer().manager().routeToDevice(browser, "headphones"));
    ASSERT_TRUE(mixer().manager().routeToDevice(player.pid(), "speakers"));
    awaitTapped(browser);
    awaitTapped(player.pid());
    EXPECT_LE(mixResidual("headphones", {{browser, 0.5F}}), rounding);
    EXPECT_LE(mixResidual("speakers", {{player.pid(), 0.25F}}), rounding);

    // And the other way round.
    ASSERT_TRUE(mixer().manager().routeToDevice(player.pid(), "headphones"));
    ASSERT_TRUE(mixer().manager().routeToDevice(browser, "speakers"));
    EXPECT_LE(mixResidual("speakers", {{browser, 0.5F}}), rounding);
    EXPECT_LE(mixResidual("headphones", {{player.pid(), 0.25F}}), rounding);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ReopeningPrograms,
                         testing::Values(Program{"mpv", PlayerKind::mpv},
                                         Program{"chromium", std::nullopt}),
                         testing::PrintToStringParamName());

} // namespace

} // namespace orvanta::test
