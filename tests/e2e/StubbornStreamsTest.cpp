#include "tests/e2e/support/EndToEndTest.h"

#include <algorithm>

namespace orvanta::test {

namespace {

constexpr std::size_t halfASecond = 24000;

/// A player whose stream is not the usual one.
struct Stubbornness {
    std::string name;
    /// What stands before the file in the command.
    std::vector<std::string> command;
    bool isTappable = false;
};

std::vector<std::string> pwPlay(const std::string& properties) {
    return {"pw-play", "-P", properties};
}

/// Every way to be heard: through the tap times its volume, or beside all taps as if there were
/// none; never both and never neither.
class StubbornStreams : public EndToEndTest, public testing::WithParamInterface<Stubbornness> {
protected:
    ChildProcess play(const NoiseSignal& noise) const {
        std::vector<std::string> command = GetParam().command;
        command.push_back(noiseFile(noise));
        return ChildProcess({.command = command, .logFile = server_.directory() / "player.log"});
    }

    /// The node of the program that is linked to something, whatever its class.
    [[nodiscard]] GraphObject awaitNode(pid_t pid) const {
        GraphObject found;
        graph().await("the player plays", [&] {
            for (const GraphObject& node : graph().nodesOf(pid))
                if (node.isRunning && !graph().targets(node.id).empty()) {
                    found = node;
                    return true;
                }
            return false;
        });
        return found;
    }

    void expectTheFile(const NoiseSignal& noise, std::uint32_t node, bool isTapped) {
        const Capture capture = recordUndisturbed(node, "speakers", halfASecond);
        for (std::uint32_t channel = 0; channel < 2; ++channel) {
            const PassageCounts counts =
                countPassages(capture.channels[2 + channel], noise, channel, 0.5F);
            EXPECT_EQ(isTapped ? counts.gained : counts.leaked, capture.frames()) << counts;
            EXPECT_EQ(counts.lost + counts.repeated, 0U) << counts;
        }
    }
};

TEST_P(StubbornStreams, AreTappedWhollyOrNotAtAll) {
    const NoiseSignal noise(31);
    const ChildProcess player = play(noise);
    const GraphObject node = awaitNode(player.pid());
    const AudioObjectID process = mixer().awaitProcess(player.pid());
    EXPECT_TRUE(eventually(Seconds(5), [&] { return mixer().isRunningOutput(process); }));

    if (GetParam().isTappable) {
        mixer().tap(player.pid(), 0.5F);
        awaitTapped(player.pid());
        expectTheFile(noise, node.id, true);
        mixer().manager().removeTap(player.pid());
    } else {
        EXPECT_FALSE(mixer().manager().createTap(player.pid(), process));
        EXPECT_FALSE(mixer().manager().hasTap(player.pid()));
    }
    graph().await("the player plays to the speakers alone",
                  [&] { return graph().targets(node.id) == std::vector<std::string>{"speakers"}; });
    expectTheFile(noise, node.id, false);
}

INSTANTIATE_TEST_SUITE_P(
    EveryKind, StubbornStreams,
    testing::Values(Stubbornness{"RawPassthrough", pwPlay("{ node.passthrough = true }"), true},
                    Stubbornness{"Exclusive", pwPlay("{ node.exclusive = true }"), false},
                    Stubbornness{"DontReconnect", pwPlay("{ node.dont-reconnect = true }"), false},
                    Stubbornness{"DontMove", pwPlay("{ node.dont-move = true }"), false},
                    Stubbornness{"JACKClient",
                                 {"pw-jack", "mpv", "--no-config", "--really-quiet", "--no-video",
                                  "--ao=jack"},
                                 false}),
    [](const auto& instance) { return instance.param.name; });

} // namespace

} // namespace orvanta::test
