#include "tests/platform/pipewire/support/OwnSink.h"
#include "tests/platform/pipewire/support/PipeWireTest.h"

#include <algorithm>
#include <unistd.h>

namespace orvanta::test {
namespace {

const Properties dontReconnect{{"node.dont-reconnect", "true"}};

/// Streams that the session manager does not move, alone or in one process with others.
class PipeWireStubbornStreams : public PipeWireTest {
protected:
    OSStatus createTap() {
        auto description = CATapDescription::stereoMixdownOfProcesses({ownProcess()});
        description.setName("stubborn");
        description.setMuteBehavior(CATapMuted);
        AudioObjectID tap = kAudioObjectUnknown;
        return hardware().createProcessTap(description, tap);
    }

    /// Waits until there are so many streams, all of them linked to just these.
    void awaitAllPlayTo(std::size_t streams, const std::vector<std::string>& nodes) const {
        graph().await("all streams play where they should", [&] {
            const auto playing = graph().playbackNodes(::getpid());
            return playing.size() == streams &&
                   std::ranges::all_of(playing, [&](const GraphObject& stream) {
                       return graph().targets(stream.id) == nodes;
                   });
        });
    }

    void expectUntouched(std::size_t streams) {
        EXPECT_TRUE(eventually(soon, [&] { return tapNodes().empty(); }));
        awaitAllPlayTo(streams, {"speakers"});
        for (const GraphObject& stream : graph().playbackNodes(::getpid()))
            EXPECT_FALSE(graph().metadata("default", stream.id, "target.object").has_value());
    }

    /// The stream of that name, or the only one there is.
    [[nodiscard]] GraphObject streamNamed(const std::string& name) const {
        for (const GraphObject& stream : graph().playbackNodes(::getpid()))
            if (name.empty() || stream.get("node.name") == name)
                return stream;
        throw std::runtime_error("no stream " + name);
    }

    void linkByHand(const std::string& node, const std::string& name = {}) const {
        const GraphObject stream = streamNamed(name);
        graph().await("the stream has ports",
                      [&] { return graph().outputPorts(stream.id).size() == 2; });
        const auto outputs = graph().outputPorts(stream.id);
        const auto inputs = graph().inputPorts(graph().node(node)->id);
        for (std::size_t channel = 0; channel < outputs.size(); ++channel)
            graph().link(outputs[channel], inputs.at(channel));
    }

    /// A node of another class than devices have, and waits until it takes two channels.
    [[nodiscard]] std::unique_ptr<OwnSink> plugNode(const std::string& name,
                                                    const std::string& mediaClass) const {
        auto sink = std::make_unique<OwnSink>(Properties{
            {"node.name", name}, {"media.class", mediaClass}, {"priority.session", "100"}});
        graph().await(name + " has ports", [&] {
            const auto node = graph().node(name);
            return node && graph().inputPorts(node->id).size() == 2;
        });
        return sink;
    }

    /// A tap is refused, and the only stream plays on where it did.
    void expectNoTap(const std::vector<std::string>& nodes) {
        EXPECT_THROW(PlayedTap(hardware(), ownProcess(), "speakers"), std::runtime_error);
        EXPECT_TRUE(eventually(soon, [&] { return tapNodes().empty(); }));
        awaitAllPlayTo(1, nodes);
    }

    /// How often it was told of a stream that it is heard beside the tap.
    [[nodiscard]] std::ptrdiff_t timesToldBesideTheTap() const {
        return timesLogged("cannot be moved and is heard beside the tap 'Played tap'");
    }

    [[nodiscard]] std::ptrdiff_t timesLogged(const std::string& end) const {
        const auto texts = log_.texts();
        return std::ranges::count_if(texts, [&](const auto& text) { return text.ends_with(end); });
    }
};

TEST_F(PipeWireStubbornStreams, ThatNeverReconnectAreNotTapped) {
    const OwnStream stream(dontReconnect);
    awaitAllPlayTo(1, {"speakers"});
    EXPECT_EQ(createTap(), kAudioHardwareIllegalOperationError);
    EXPECT_EQ(timesLogged("cannot be moved, so there is no tap 'stubborn'"), 1);
    expectUntouched(1);
}

TEST_F(PipeWireStubbornStreams, ThatAreLinkedByHandAreNotTapped) {
    const OwnStream stream({{"node.autoconnect", "false"}, {"media.role", "Music"}});
    graph().await("there is a stream",
                  [&] { return graph().playbackNodes(::getpid()).size() == 1; });
    linkByHand("speakers");
    awaitAllPlayTo(1, {"speakers"});
    EXPECT_EQ(createTap(), kAudioHardwareIllegalOperationError);
    expectUntouched(1);
}

TEST_F(PipeWireStubbornStreams, KeepTheirWholeProcessFromBeingTapped) {
    const OwnStream usual;
    const OwnStream stubborn(dontReconnect);
    awaitAllPlayTo(2, {"speakers"});
    EXPECT_EQ(createTap(), kAudioHardwareIllegalOperationError);
    expectUntouched(2);
}

TEST_F(PipeWireStubbornStreams, NoLongerStandInTheWayWhenTheyHaveEnded) {
    const OwnStream usual;
    auto stubborn = std::make_unique<OwnStream>(dontReconnect);
    awaitAllPlayTo(2, {"speakers"});
    EXPECT_NE(createTap(), noErr);
    stubborn.reset();
    awaitAllPlayTo(1, {"speakers"});
    EXPECT_TRUE(eventually(soon, [&] { return createTap() == noErr; }));
    awaitAllPlayTo(1, {tapNodes().at(0).get("node.name")});
}

TEST_F(PipeWireStubbornStreams, ThatOpenLaterAreHeardBesideTheTapWhichIsTold) {
    const OwnStream usual;
    awaitAllPlayTo(1, {"speakers"});
    auto tap = std::make_unique<PlayedTap>(hardware(), ownProcess(), "speakers");
    awaitTapped(::getpid(), "speakers");
    const OwnStream stubborn(dontReconnect);
    const auto playsTo = [&](const std::string& node) {
        const auto playing = graph().playbackNodes(::getpid());
        return std::ranges::count_if(playing, [&](const GraphObject& stream) {
            return graph().targets(stream.id) == std::vector{node};
        });
    };
    const std::string tapName = tapNodes().at(0).get("node.name");
    graph().await("one is tapped and one is not",
                  [&] { return playsTo(tapName) == 1 && playsTo("speakers") == 1; });
    EXPECT_TRUE(eventually(soon, [&] { return timesToldBesideTheTap() == 1; }));

    // Such a stream ends when what it plays on goes, so it must never have been on the tap.
    tap.reset();
    expectUntouched(2);
    EXPECT_EQ(timesToldBesideTheTap(), 1);
}

/// Once another program plays on the device that they had, they would not get it back.
TEST_F(PipeWireStubbornStreams, ThatWantADeviceForThemselvesAreNotTapped) {
    const OwnStream stream(Properties{{"node.exclusive", "true"}});
    awaitAllPlayTo(1, {"speakers"});
    EXPECT_EQ(createTap(), kAudioHardwareIllegalOperationError);
    expectUntouched(1);
}

TEST_F(PipeWireStubbornStreams, ThatAreAlsoLinkedByHandAreNotTapped) {
    graph().plug({.name = "headphones", .priority = 500});
    const OwnStream stream;
    awaitAllPlayTo(1, {"speakers"});
    linkByHand("headphones");
    awaitAllPlayTo(1, {"headphones", "speakers"});
    awaitDevice("speakers");
    expectNoTap({"headphones", "speakers"});
}

/// A duplex device has inputs like any other, and is none of those that are listed.
TEST_F(PipeWireStubbornStreams, ThatAreAlsoLinkedToADuplexDeviceAreNotTapped) {
    const auto duplex = plugNode("duplex", "Audio/Duplex");
    const OwnStream stream;
    awaitAllPlayTo(1, {"speakers"});
    linkByHand("duplex");
    awaitAllPlayTo(1, {"duplex", "speakers"});
    awaitDevice("speakers");
    expectNoTap({"duplex", "speakers"});
}

/// Nobody hears what a recorder takes from a stream.
TEST_F(PipeWireStubbornStreams, AreNotThoseThatAreRecorded) {
    const auto recorder = plugNode("recorder", "Stream/Input/Audio");
    const OwnStream stream;
    awaitAllPlayTo(1, {"speakers"});
    linkByHand("recorder");
    awaitAllPlayTo(1, {"recorder", "speakers"});
    awaitDevice("speakers");
    const PlayedTap tap(hardware(), ownProcess(), "speakers");
    const std::string tapName = tapNodes().at(0).get("node.name");
    awaitAllPlayTo(1, {tapName, "recorder"});
}

TEST_F(PipeWireStubbornStreams, ThatAreLinkedByHandStandInNobodysWayUntilTheyAre) {
    const OwnStream usual;
    awaitAllPlayTo(1, {"speakers"});
    const OwnStream silent(Properties{{"node.name", "silent"}, {"node.autoconnect", "false"}});
    graph().await("there are two streams",
                  [&] { return graph().playbackNodes(::getpid()).size() == 2; });
    awaitDevice("speakers");
    const PlayedTap tap(hardware(), ownProcess(), "speakers");
    EXPECT_TRUE(eventually(soon, [&] { return tap.input() == OwnStream::level; }));
    EXPECT_EQ(timesToldBesideTheTap(), 0);
    linkByHand("speakers", "silent");
    EXPECT_TRUE(eventually(soon, [&] { return timesToldBesideTheTap() == 1; }));
}

/// There is nothing in encoded sound that a volume could be applied to, and the session manager
/// knows.
TEST_F(PipeWireStubbornStreams, ThatCarryEncodedSoundAreNotTapped) {
    const OwnSink receiver({{"node.name", "receiver"}, {"priority.session", "100"}},
                           SoundFormat::encoded);
    awaitDevice("receiver");
    const OwnStream stream({{"node.passthrough", "true"}, {"target.object", "receiver"}},
                           SoundFormat::encoded);
    awaitAllPlayTo(1, {"receiver"});
    expectNoTap({"receiver"});
}

TEST_F(PipeWireStubbornStreams, ThatTurnOutToBeSoLaterAreLeftAloneAndTheTapStays) {
    const OwnSink receiver({{"node.name", "receiver"}, {"priority.session", "100"}},
                           SoundFormat::encoded);
    const OwnStream usual;
    awaitAllPlayTo(1, {"speakers"});
    awaitDevice("receiver");
    PlayedTap tap(hardware(), ownProcess(), "speakers");
    awaitTapped(::getpid(), "speakers");
    const OwnStream encoded({{"node.passthrough", "true"}, {"target.object", "receiver"}},
                            SoundFormat::encoded);
    EXPECT_TRUE(eventually(
        soon, [&] { return timesLogged("does not come to the tap, leaving it alone") == 1; }));
    tap.stop();
    tap.play("speakers");
    const std::string tapName = tapNodes().at(0).get("node.name");
    graph().await("one is tapped, the other is not", [&] {
        std::vector<std::string> targets;
        for (const GraphObject& stream : graph().playbackNodes(::getpid()))
            for (const std::string& target : graph().targets(stream.id))
                targets.push_back(target);
        std::ranges::sort(targets);
        return targets == std::vector<std::string>{tapName, "receiver"};
    });
    EXPECT_TRUE(eventually(soon, [&] { return tap.input() == OwnStream::level; }));
}

TEST_F(PipeWireStubbornStreams, AreAllStreamsWhileTheSessionManagerStandsStill) {
    const OwnStream stream;
    awaitAllPlayTo(1, {"speakers"});
    const AudioObjectID process = ownProcess();
    awaitDevice("speakers");
    server_.freezeSessionManager();
    EXPECT_THROW(PlayedTap(hardware(), process, "speakers"), std::runtime_error);
    server_.thawSessionManager();
    expectUntouched(1);
    const PlayedTap tap(hardware(), process, "speakers");
    awaitTapped(::getpid(), "speakers");
}

} // namespace
} // namespace orvanta::test
