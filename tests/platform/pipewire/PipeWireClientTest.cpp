#include "tests/platform/pipewire/support/PipeWireTest.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/WavFile.h"

#include <unistd.h>

namespace orvanta::test {
namespace {

class PipeWireClient : public PipeWireTest {
protected:
    [[nodiscard]] std::filesystem::path silentFile() const {
        auto path = server_.directory() / "silence.wav";
        writeWavFile(path, 48000, std::vector(2, std::vector<float>(48000UL * 30)));
        return path;
    }

    AudioClient awaitClient(pid_t pid) {
        awaitProcess(pid);
        return hardware().audioClient(pid).value_or(AudioClient());
    }
};

TEST_F(PipeWireClient, HasTheNameAndBinaryThatAPlayerGives) {
    struct Case {
        std::vector<std::string> command;
        std::string name;
        std::string binary;
    };

    const std::string file = silentFile();
    const std::vector<Case> cases{{{"pw-play", file}, "pw-play", "pw-cat"},
                                  {{"paplay", file}, "paplay", "pacat"},
                                  {{"aplay", "-q", "-D", "pipewire", file}, "aplay", "aplay"}};
    for (const Case& each : cases) {
        const ChildProcess player({.command = each.command});
        const AudioClient client = awaitClient(player.pid());
        EXPECT_EQ(client.pid, player.pid());
        EXPECT_EQ(client.name, each.name);
        EXPECT_EQ(client.binary, each.binary) << each.name;
    }
}

TEST_F(PipeWireClient, TellsWhatADesktopKnowsProgramsBy) {
    const OwnStream stream({{"application.name", "Some Player"},
                            {"application.id", "org.example.Player"},
                            {"application.icon-name", "multimedia-player"},
                            {"application.process.binary", "some-player"}});
    const AudioClient client = awaitClient(::getpid());
    EXPECT_EQ(client.name, "Some Player");
    EXPECT_EQ(client.applicationID, "org.example.Player");
    EXPECT_EQ(client.iconName, "multimedia-player");
    EXPECT_EQ(client.binary, "some-player");
}

TEST_F(PipeWireClient, IsKnownForAsLongAsItsProcess) {
    auto owner = std::make_unique<ChildProcess>(ChildProcess::Launch{.command = {"sleep", "600"}});
    const pid_t pid = owner->pid();
    Properties properties = OwnStream::ofProcess(pid);
    properties["application.name"] = "Sleeper";
    auto stream = std::make_unique<OwnStream>(properties);
    EXPECT_EQ(awaitClient(pid).name, "Sleeper");
    stream.reset();
    graph().await("the stream is gone", [&] { return graph().playbackNodes(pid).empty(); });
    EXPECT_EQ(awaitClient(pid).name, "Sleeper");
    killEverything();
    EXPECT_TRUE(eventually(soon, [&] { return !hardware().isServerReachable(); }));
    EXPECT_EQ(awaitClient(pid).name, "Sleeper");
    owner.reset();
    EXPECT_TRUE(eventually(soon, [&] { return !hardware().audioClient(pid).has_value(); }));
}

TEST_F(PipeWireClient, AreInTheOrderOfTheProcessObjects) {
    const OwnStream first;
    awaitProcess(::getpid());
    const ChildProcess second({.command = {"pw-play", silentFile()}});
    awaitProcess(second.pid());
    const auto clients = hardware().audioClients();
    ASSERT_EQ(clients.size(), 2U);
    EXPECT_EQ(clients[0].pid, ::getpid());
    EXPECT_EQ(clients[1].pid, second.pid());
}

TEST_F(PipeWireClient, OfNobodyIsNone) {
    EXPECT_FALSE(hardware().audioClient(::getpid()).has_value());
    EXPECT_TRUE(hardware().audioClients().empty());
}

/// What a sandboxed program says of itself is its id inside.
TEST_F(PipeWireClient, OfTheServersOwnProtocolIsWhoTheKernelSaysItIs) {
    const OwnStream stream(Properties{{"application.process.id", "2"}});
    EXPECT_EQ(awaitClient(::getpid()).pid, ::getpid());
    EXPECT_FALSE(hardware().audioClient(2).has_value());
}

} // namespace
} // namespace orvanta::test
