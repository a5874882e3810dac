#include "platform/pipewire/TapName.h"
#include "tests/platform/pipewire/support/PipeWireTest.h"

#include <algorithm>
#include <unistd.h>

namespace orvanta::test {
namespace {

class PipeWireRecovery : public PipeWireTest {
protected:
    void tapOwnStream() {
        stream_ = std::make_unique<OwnStream>();
        awaitDevice("speakers");
        tap_ = std::make_unique<PlayedTap>(hardware(), ownProcess(), "speakers");
        awaitTapped(::getpid(), "speakers");
        ASSERT_TRUE(awaitSound());
    }

    void takeOut() {
        const GraphObject node = tapNodes().at(0);
        runToEnd({"pw-cli", "destroy", std::to_string(node.id)});
        graph().await("the node is gone", [&] {
            return std::ranges::none_of(tapNodes(), [&](const GraphObject& other) {
                return other.get("object.serial") == node.get("object.serial");
            });
        });
    }

    [[nodiscard]] bool awaitSound() const {
        return eventually(soon, [&] { return tap_->input() == OwnStream::level; });
    }

    [[nodiscard]] bool getsSilentCycles() const {
        const std::uint64_t before = tap_->cycles();
        return eventually(soon, [&] { return tap_->cycles() > before + 5 && tap_->input() == 0; });
    }

    std::unique_ptr<OwnStream> stream_;
    std::unique_ptr<PlayedTap> tap_;
};

TEST_F(PipeWireRecovery, OfTheServerRevivesTapAndAggregateUnderTheirIds) {
    tapOwnStream();
    const AudioObjectID aggregate = tap_->aggregate();
    killEverything();
    stream_.reset();
    EXPECT_TRUE(getsSilentCycles());
    EXPECT_NE(hardware().startDevice(4242, nullptr), noErr);

    startEverything();
    stream_ = std::make_unique<OwnStream>();
    awaitTapped(::getpid(), "speakers");
    EXPECT_TRUE(awaitSound());
    EXPECT_EQ(readString(hardware(), aggregate, {kAudioObjectPropertyName}), "Aggregate");
    EXPECT_TRUE(readTapFormat(hardware(), tap_->tap()).has_value());
}

TEST_F(PipeWireRecovery, CanWaitAtRestForTheServer) {
    tapOwnStream();
    tap_->comeToRest(true);
    killEverything();
    stream_.reset();
    startEverything();
    stream_ = std::make_unique<OwnStream>();
    EXPECT_TRUE(awaitSound());
}

TEST_F(PipeWireRecovery, IsNotNeededToTakeEverythingDown) {
    tapOwnStream();
    killEverything();
    stream_.reset();
    ASSERT_TRUE(getsSilentCycles());
    AudioObjectID other = kAudioObjectUnknown;
    auto description = CATapDescription::stereoMixdownOfProcesses({ownProcess()});
    description.setMuteBehavior(CATapMuted);
    EXPECT_EQ(hardware().createProcessTap(description, other), kAudioHardwareNotRunningError);
    const AudioObjectID tap = tap_->tap();
    EXPECT_EQ(hardware().destroyProcessTap(tap), noErr);
    tap_->stop();
    EXPECT_FALSE(tap_->isInCall());
    startEverything();
    EXPECT_TRUE(tapNodes().empty());
}

TEST_F(PipeWireRecovery, OfTheSessionManagerClaimsStreamsAgain) {
    tapOwnStream();
    server_.killSessionManager();
    // Hardware goes with the session manager and comes with it.
    graph().unplug("speakers");
    stream_.reset();
    server_.startSessionManager();
    graph().plug({.name = "speakers"});
    graph().await("there is a default", [&] { return graph().defaultSink() == "speakers"; });
    stream_ = std::make_unique<OwnStream>();
    awaitTapped(::getpid(), "speakers");
    EXPECT_TRUE(awaitSound());
}

TEST_F(PipeWireRecovery, OfTheLastDeviceBringsTheTapBack) {
    tapOwnStream();
    graph().unplug("speakers");
    graph().await("the tap is out of the server", [&] { return tapNodes().empty(); });
    EXPECT_TRUE(getsSilentCycles());
    // And stays out, whatever stands in for a device meanwhile.
    letTimePass(Seconds(0.5));
    EXPECT_TRUE(tapNodes().empty());

    graph().plug({.name = "speakers"});
    graph().await("the tap is back in the server", [&] { return tapNodes().size() == 1; });
    letTimePass(Seconds(0.5));
    EXPECT_TRUE(graph().targets(tapNodes().at(0).id).empty());
    awaitDevice("speakers");
    tap_->stop();
    tap_->play("speakers");
    awaitTapped(::getpid(), "speakers");
    EXPECT_TRUE(awaitSound());
}

TEST_F(PipeWireRecovery, PutsATapBackThatSomebodyTookOut) {
    tapOwnStream();
    takeOut();
    graph().await("there is another node", [&] { return tapNodes().size() == 1; });
    awaitTapped(::getpid(), "speakers");
    EXPECT_TRUE(awaitSound());
}

TEST_F(PipeWireRecovery, OfATapThatIsTakenOutAgainAndAgainWaitsAndSaysSo) {
    tapOwnStream();
    const auto wasToldToWait = [&] {
        const std::vector<std::string> texts = log_.texts();
        return std::ranges::any_of(texts, [](const std::string& text) {
            return text.find("was taken out of the server again and again") != std::string::npos;
        });
    };
    for (int time = 0; time < 5; ++time) {
        takeOut();
        awaitTapped(::getpid(), "speakers");
        EXPECT_FALSE(wasToldToWait());
    }
    takeOut();
    EXPECT_TRUE(eventually(soon, wasToldToWait));
    EXPECT_TRUE(eventually(4 * soon, [&] { return tapNodes().size() == 1; }));
    awaitTapped(::getpid(), "speakers");
    EXPECT_TRUE(awaitSound());
}

TEST_F(PipeWireRecovery, OfADeviceThatComesAndGoesManyTimesBringsTheTapBack) {
    tapOwnStream();
    for (int time = 0; time < 8; ++time) {
        graph().unplug("speakers");
        graph().await("the tap is out of the server", [&] { return tapNodes().empty(); });
        graph().plug({.name = "speakers"});
    }
    EXPECT_TRUE(eventually(2 * soon, [&] { return tapNodes().size() == 1; }));
    awaitDevice("speakers");
    tap_->stop();
    tap_->play("speakers");
    awaitTapped(::getpid(), "speakers");
    EXPECT_TRUE(awaitSound());
}

TEST_F(PipeWireRecovery, FreesWhatAKilledPredecessorLeftAndNothingElse) {
    stream_ = std::make_unique<OwnStream>();
    const GraphObject stream = graph().awaitPlayback(::getpid());
    pipewire::TapOwner alive = pipewire::currentTapOwner();
    pipewire::TapOwner dead = alive;
    dead.startTime += 1;
    // Notes may stand on any object, so one of a living owner stands on the device.
    const GraphObject device = *graph().node("speakers");
    graph().setMetadata("default", stream.id, "target.object", "Spa:String",
                        pipewire::makeTapName(dead, 900));
    graph().setMetadata("default", device.id, "target.object", "Spa:String",
                        pipewire::makeTapName(alive, 901));
    EXPECT_TRUE(hardware().isServerReachable());
    graph().await("the stream is free", [&] {
        return !graph().metadata("default", stream.id, "target.object").has_value();
    });
    EXPECT_EQ(graph().metadata("default", device.id, "target.object"),
              pipewire::makeTapName(alive, 901));
}

TEST_F(PipeWireRecovery, LeavesWhatATapInAnotherContainerHasForAsLongAsItsNodeStands) {
    stream_ = std::make_unique<OwnStream>();
    const GraphObject stream = graph().awaitPlayback(::getpid());
    // No process of this container; only the node tells that somebody lives.
    pipewire::TapOwner hidden = pipewire::currentTapOwner();
    hidden.startTime += 1;
    const std::string name = pipewire::makeTapName(hidden, 902);
    const std::string gone = pipewire::makeTapName(hidden, 903);
    graph().plug({.name = name});
    graph().setMetadata("default", stream.id, "target.object", "Spa:String", name);
    graph().setMetadata("default", graph().node("speakers")->id, "target.object", "Spa:String",
                        gone);
    EXPECT_TRUE(hardware().isServerReachable());
    graph().await("what is left of the dead one is freed", [&] {
        return !graph()
                    .metadata("default", graph().node("speakers")->id, "target.object")
                    .has_value();
    });
    EXPECT_EQ(graph().metadata("default", stream.id, "target.object"), name);
    graph().unplug(name);
    graph().await("the stream is free", [&] {
        return !graph().metadata("default", stream.id, "target.object").has_value();
    });
}

TEST_F(PipeWireRecovery, FindsAServerThatStartsLater) {
    killEverything();
    EXPECT_FALSE(hardware().isServerReachable());
    std::uint32_t size = 0;
    EXPECT_EQ(hardware().getPropertyDataSize(kAudioObjectSystemObject,
                                             {kAudioHardwarePropertyProcessObjectList}, size),
              kAudioHardwareNotRunningError);
    startEverything();
    EXPECT_NE(awaitDevice("speakers"), kAudioObjectUnknown);
    EXPECT_TRUE(hardware().isServerReachable());
}

} // namespace
} // namespace orvanta::test
