#include "tests/platform/pipewire/support/PipeWireTest.h"

#include <algorithm>
#include <unistd.h>

namespace orvanta::test {
namespace {

/// The step at which the streams that play already come to the tap, or do not.
class PipeWireFirstStart : public PipeWireTest {
protected:
    OSStatus createTap(CATapMuteBehavior behavior, AudioObjectID& tap) {
        auto description = CATapDescription::stereoMixdownOfProcesses({ownProcess()});
        description.setMuteBehavior(behavior);
        tapUUID_ = description.UUID();
        return hardware().createProcessTap(description, tap);
    }

    /// Everything up to the start. The streams stay where they are, unless the tap mutes them.
    void prepare(CATapMuteBehavior behavior = CATapMuteBehavior::mutedWhenTapped) {
        awaitDevice("speakers");
        AudioObjectID tap = kAudioObjectUnknown;
        ASSERT_EQ(createTap(behavior, tap), noErr);
        AggregateDeviceDescription description;
        description.uid = "aggregate";
        description.taps = {tapUUID_};
        description.subDevices = {"speakers"};
        ASSERT_EQ(hardware().createAggregateDevice(description, aggregate_), noErr);
        ASSERT_EQ(hardware().createIOProcID(aggregate_, {idle, nullptr, nullptr}, proc_), noErr);
    }

    OSStatus start() { return hardware().startDevice(aggregate_, proc_); }

    [[nodiscard]] std::optional<GraphObject> stream(const std::string& name) const {
        for (const GraphObject& node : graph().playbackNodes(::getpid()))
            if (node.get("node.name") == name)
                return node;
        return std::nullopt;
    }

    void awaitTargets(const std::string& name, const std::vector<std::string>& targets) const {
        graph().await(name + " plays where it should", [&] {
            const auto node = stream(name);
            return node && graph().targets(node->id) == targets;
        });
    }

    /// Plays a stream to the speakers and, by hand, to the headphones, which keeps it from coming.
    std::unique_ptr<OwnStream> playTwice(const std::string& name) const {
        auto played = std::make_unique<OwnStream>(Properties{{"node.name", name}});
        awaitTargets(name, {"speakers"});
        const auto outputs = graph().outputPorts(stream(name)->id);
        const auto inputs = graph().inputPorts(graph().node("headphones")->id);
        for (std::size_t channel = 0; channel < outputs.size(); ++channel)
            graph().link(outputs[channel], inputs.at(channel));
        awaitTargets(name, {"headphones", "speakers"});
        return played;
    }

    static OSStatus idle(AudioObjectID, const AudioTimeStamp*, const AudioBufferList*,
                         const AudioTimeStamp*, AudioBufferList*, const AudioTimeStamp*, void*) {
        return noErr;
    }

    AudioObjectID aggregate_ = kAudioObjectUnknown;
    AudioDeviceIOProcID proc_ = nullptr;

private:
    std::string tapUUID_;
};

TEST_F(PipeWireFirstStart, FailsWhenTheSessionManagerIsGone) {
    const OwnStream stream;
    awaitPlaysTo(::getpid(), "speakers");
    prepare();
    server_.killSessionManager();
    AudioObjectID other = kAudioObjectUnknown;
    ASSERT_TRUE(eventually(
        soon, [&] { return createTap(CATapMuted, other) == kAudioHardwareNotRunningError; }));
    EXPECT_EQ(start(), kAudioHardwareNotRunningError);
    EXPECT_EQ(start(), kAudioHardwareNotRunningError);
}

TEST_F(PipeWireFirstStart, FailsEachTimeUntilTheStreamsCome) {
    graph().plug({.name = "headphones", .priority = 500});
    const auto played = playTwice("stubborn");
    prepare();
    EXPECT_EQ(start(), kAudioHardwareIllegalOperationError);
    awaitTargets("stubborn", {"headphones", "speakers"});
    EXPECT_EQ(start(), kAudioHardwareIllegalOperationError);
    awaitTargets("stubborn", {"headphones", "speakers"});
    graph().unplug("headphones");
    ASSERT_TRUE(eventually(soon, [&] { return findDeviceID(hardware(), "headphones") == 0; }));
    EXPECT_EQ(start(), noErr);
    awaitTapped(::getpid(), "speakers");
}

TEST_F(PipeWireFirstStart, IsNotHinderedByAStreamThatWasGivenUpAndHasEnded) {
    graph().plug({.name = "headphones", .priority = 500});
    const OwnStream usual(Properties{{"node.name", "usual"}});
    awaitTargets("usual", {"speakers"});
    auto stubborn = playTwice("stubborn");
    prepare(CATapMuted);
    const auto isGivenUp = [&] {
        const auto texts = log_.texts();
        return std::ranges::any_of(texts, [](const std::string& text) {
            return text.ends_with("does not come to the tap, leaving it alone");
        });
    };
    ASSERT_TRUE(eventually(soon, isGivenUp));
    stubborn.reset();
    graph().await("the stubborn stream is gone", [&] { return !stream("stubborn"); });
    EXPECT_EQ(start(), noErr);
    awaitTapped(::getpid(), "speakers");
}

} // namespace
} // namespace orvanta::test
