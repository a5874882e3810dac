#include "tests/e2e/support/EndToEndTest.h"

namespace orvanta::test {

namespace {

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
        expectSignal(noise, Sound::halved, node.id);
        mixer().manager().removeTap(player.pid());
    } else {
        EXPECT_FALSE(mixer().manager().createTap(player.pid(), process));
        EXPECT_FALSE(mixer().manager().hasTap(player.pid()));
    }
    graph().await("the player plays to the speakers alone",
                  [&] { return graph().targets(node.id) == std::vector<std::string>{"speakers"}; });
    expectSignal(noise, Sound::own, node.id);
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
