#include "tests/platform/pipewire/support/PipeWireTest.h"

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

} // namespace
} // namespace orvanta::test
