#include "tests/e2e/support/ChromiumTab.h"
#include "tests/e2e/support/EndToEndTest.h"
#include "tests/e2e/support/SignalMatch.h"
#include "tests/e2e/support/TapHolder.h"

#include <algorithm>
#include <iostream>

namespace orvanta::test {

namespace {

class KilledMixer : public EndToEndTest {};

TEST_F(KilledMixer, GivesTheProgramBackItsOwnSound) {
    StreamClient client;
    client.open();
    const GraphObject stream = graph().awaitPlayback(client.pid());
    auto holder = std::make_unique<TapHolder>(0.5F, std::vector<pid_t>{client.pid()});
    awaitTapped(client.pid());
    AlignedRecorder recorder(graph(), 1);
    recorder.listen(0, monitorPorts("speakers")[0]);
    recorder.record(16384);

    const double killed = monotonicSeconds();
    holder->kill();
    awaitOnly(client.pid(), "speakers");
    recorder.record(24000);
    const Capture capture = recorder.finish();

    const auto passages =
        PassageReader(client.noise().channel(0, signalFrames), 0.5F).read(capture.channels[0]);
    const PassageCounts counts = count(passages);
    EXPECT_GT(counts.gained, 0U) << counts;
    EXPECT_GT(counts.leaked, 16000U) << counts;
    EXPECT_EQ(counts.doubled + counts.foreign, 0U) << counts;
    ASSERT_EQ(passages.back().material, Material::leaked);

    const auto own = std::ranges::find(passages, Material::leaked, &Passage::material);
    const auto cycle = std::ranges::find_if(capture.cycles, [&](const Capture::Cycle& c) {
        return c.firstFrame + c.frames > own->start;
    });
    const double silentFor = cycle->time - killed;
    std::cout << "own sound back after " << silentFor * 1000 << " ms; " << counts << "\n";
    EXPECT_LE(silentFor, 2.0);

    // What it left behind about the stream is cleared away by whoever starts next.
    mixer().awaitProcess(client.pid());
    graph().await("the dead mixer's word about the stream is gone", [&] {
        return !graph().metadata("default", stream.id, "target.object").has_value();
    });
}

TEST_F(KilledMixer, GivesEveryProgramOnEveryDeviceBackItsOwnSoundAtItsOwnVolume) {
    graph().plug({.name = "headphones", .priority = 500});
    const NoiseSignal noise(31);
    const auto file = noiseFile(noise);
    const ChromiumTab tab(file, server_.directory());
    StreamClient client({.seed = 32});
    client.open();
    const RealPlayer quiet(PlayerKind::paplay, file, server_.directory());
    const RealPlayer other(PlayerKind::aplay, noiseFile(NoiseSignal(33)), server_.directory());
    const std::vector<pid_t> programs = {tab.awaitAudioProcess(graph()), client.pid(), quiet.pid(),
                                         other.pid()};
    for (const pid_t pid : programs)
        awaitOnly(pid, "speakers");
    // The tools' 50 % are 0.5 to the third power.
    constexpr double quietVolume = 0.125;
    const std::string input = graph().awaitPlayback(quiet.pid()).get("object.serial");
    runToEnd({"pactl", "set-sink-input-volume", input, "50%"});

    auto holder = std::make_unique<TapHolder>(0.5F, programs);
    holder->route(client.pid(), "headphones");
    holder->route(quiet.pid(), "headphones");
    for (const pid_t pid : programs)
        awaitTapped(pid);
    EXPECT_LE(mixResidual("headphones", {{client.pid(), 0.5F}, {quiet.pid(), 0.5F}}), rounding);

    const double killed = monotonicSeconds();
    holder->kill();
    for (const pid_t pid : programs)
        awaitOnly(pid, "speakers");
    const double silentFor = monotonicSeconds() - killed;
    std::cout << "all back after " << silentFor * 1000 << " ms\n";
    EXPECT_LE(silentFor, 2.0);
    std::vector<Voice> voices;
    for (const pid_t pid : programs)
        voices.push_back({pid, 1});
    EXPECT_LE(mixResidual("speakers", voices), 2 * rounding);

    const GraphObject stream = graph().awaitPlayback(quiet.pid());
    const Capture capture = recordUndisturbed(stream.id, "speakers", 12000);
    const auto match = findSignal(capture.channels[0], noise.channel(0, signalFrames));
    ASSERT_TRUE(match);
    EXPECT_NEAR(match->gain, quietVolume, 1e-4);
}

} // namespace

} // namespace orvanta::test
