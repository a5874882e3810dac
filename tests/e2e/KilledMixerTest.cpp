#include "tests/e2e/support/EndToEndTest.h"
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

} // namespace

} // namespace orvanta::test
