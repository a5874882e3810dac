#include "tests/e2e/support/EndToEndTest.h"
#include "tests/e2e/support/SignalMatch.h"

#include <iostream>

namespace orvanta::test {

namespace {

class Latency : public EndToEndTest, public testing::WithParamInterface<std::uint32_t> {
protected:
    /// Frames by which the device's monitor lies behind the program's stream. Heard for no longer
    /// than that takes: the shorter a cycle, the sooner a busy machine misses one.
    [[nodiscard]] std::int64_t lag(std::uint32_t stream) const {
        const Capture capture =
            recordUndisturbed(stream, "speakers", std::size_t{2048} + 4 * GetParam());
        EXPECT_EQ(capture.cycles.back().frames, GetParam());
        const auto match = findSignal(capture.channels[2], capture.channels[0]);
        return match ? -match->offset : -1;
    }
};

TEST_P(Latency, OfAProgramIsTheSameWithAndWithoutATap) {
    graph().forceQuantum(GetParam());
    StreamClient client;
    client.open();
    const GraphObject stream = graph().awaitPlayback(client.pid());

    const std::int64_t untapped = lag(stream.id);
    mixer().tap(client.pid(), 0.5F);
    awaitTapped(client.pid());
    const std::int64_t tapped = lag(stream.id);

    std::cout << "frames from program to device at " << GetParam() << ": " << untapped
              << " untapped, " << tapped << " tapped\n";
    ASSERT_GE(untapped, 0);
    EXPECT_EQ(tapped, untapped);
}

INSTANTIATE_TEST_SUITE_P(Frames, Latency, testing::Values(64U, 256U, 1024U),
                         testing::PrintToStringParamName());

} // namespace

} // namespace orvanta::test
