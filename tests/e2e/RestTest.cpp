#include "tests/e2e/support/EndToEndTest.h"
#include "tests/e2e/support/TapHolder.h"

#include <iostream>

namespace orvanta::test {

namespace {

class PausedProgram : public EndToEndTest {
protected:
    /// Nothing of the tap runs any more: levels are zero, the callback count stands still and the
    /// mixer's process takes no processor time.
    static void expectRest(TapHolder& holder, pid_t pid) {
        ASSERT_TRUE(eventually(Seconds(15), [&] {
            const auto report = holder.report(pid);
            return report.rms == 0 && report.peak == 0;
        })) << "the levels never reached zero";
        std::uint64_t count = 0;
        ASSERT_TRUE(eventually(Seconds(10), [&] {
            const std::uint64_t before = count;
            count = holder.report(pid).callbacks;
            letTimePass(Seconds(0.3));
            return count == before;
        })) << "the callbacks never stopped";

        const double processorBefore = holder.processorSeconds();
        letTimePass(Seconds(2));
        EXPECT_EQ(holder.report(pid).callbacks, count);
        const double spent = holder.processorSeconds() - processorBefore;
        std::cout << "processor time in 2 s of rest: " << spent << " s\n";
        EXPECT_LE(spent, 0.03);
    }

    static void expectSound(TapHolder& holder, pid_t pid) {
        const std::uint64_t before = holder.report(pid).callbacks;
        EXPECT_TRUE(eventually(Seconds(10), [&] {
            const auto report = holder.report(pid);
            return report.callbacks > before && report.rms > 0.05F;
        })) << "the tap did not wake up";
    }
};

TEST_F(PausedProgram, GetsSilentCyclesUntilTheLevelsAreZeroAndThenNone) {
    StreamClient client;
    client.open();
    graph().awaitPlayback(client.pid());
    TapHolder holder(0.5F, {client.pid()});
    awaitTapped(client.pid());
    expectSound(holder, client.pid());

    client.pause();
    expectRest(holder, client.pid());

    client.resume();
    expectSound(holder, client.pid());
}

TEST_F(PausedProgram, ThatIsARealPlayerRestsToo) {
    RealPlayer player(PlayerKind::mpv, noiseFile(NoiseSignal(3)), server_.directory());
    graph().awaitPlayback(player.pid());
    TapHolder holder(0.5F, {player.pid()});
    awaitTapped(player.pid());
    expectSound(holder, player.pid());

    player.pause();
    expectRest(holder, player.pid());

    player.resume();
    expectSound(holder, player.pid());
}

TEST_F(PausedProgram, ThatClosesItsStreamRestsToo) {
    StreamClient client;
    client.open();
    graph().awaitPlayback(client.pid());
    TapHolder holder(0.5F, {client.pid()});
    awaitTapped(client.pid());
    expectSound(holder, client.pid());

    client.close();
    expectRest(holder, client.pid());

    client.open();
    expectSound(holder, client.pid());
}

} // namespace

} // namespace orvanta::test
