#pragma once

#include "platform/embedded/EmbeddedAudioServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <vector>

namespace orvanta::test {

/// The smallest client: taps processes, builds an aggregate on a device and copies tap to device
/// with a gain. What it makes it takes down again.
class GainTap {
public:
    GainTap(AudioHardware& hardware, const std::vector<AudioObjectID>& processes,
            const std::string& deviceUID, float gain = 1,
            CATapMuteBehavior muteBehavior = CATapMuted)
        : hardware_(hardware), gain_(gain) {
        auto description = CATapDescription::stereoMixdownOfProcesses(processes);
        description.setMuteBehavior(muteBehavior);
        uuid_ = description.UUID();
        EXPECT_EQ(hardware_.createProcessTap(description, tap_), noErr);
        build(deviceUID);
    }

    GainTap(const GainTap&) = delete;
    GainTap& operator=(const GainTap&) = delete;

    ~GainTap() {
        dismantle();
        hardware_.destroyProcessTap(tap_);
    }

    void build(const std::string& deviceUID) {
        AggregateDeviceDescription description;
        description.uid = "aggregate." + uuid_ + "." + std::to_string(++builds_);
        description.name = "Gain";
        description.taps = {uuid_};
        description.subDevices = {deviceUID};
        description.master = deviceUID;
        EXPECT_EQ(hardware_.createAggregateDevice(description, aggregate_), noErr);
        EXPECT_EQ(
            hardware_.createIOProcID(aggregate_, {&GainTap::process, this, &GainTap::rests}, proc_),
            noErr);
    }

    void dismantle() {
        hardware_.destroyIOProcID(aggregate_, proc_);
        hardware_.destroyAggregateDevice(aggregate_);
    }

    OSStatus start() { return hardware_.startDevice(aggregate_, proc_); }

    OSStatus stop() { return hardware_.stopDevice(aggregate_, proc_); }

    [[nodiscard]] AudioObjectID tap() const { return tap_; }

    [[nodiscard]] AudioObjectID aggregate() const { return aggregate_; }

    [[nodiscard]] AudioDeviceIOProcID proc() const { return proc_; }

    [[nodiscard]] std::uint64_t calls() const { return calls_; }

    [[nodiscard]] std::uint64_t restQuestions() const { return restQuestions_; }

    /// Shape of what the last call was given.
    struct Shape {
        std::size_t inputBuffers = 0;
        std::uint32_t inputChannels = 0;
        std::size_t outputBuffers = 0;
        std::uint32_t outputChannels = 0;
        std::uint32_t outputBytes = 0;
    };

    [[nodiscard]] Shape shape() const { return shape_; }

    std::atomic<bool> atRest = false;

private:
    static OSStatus process(AudioObjectID, const AudioTimeStamp*, const AudioBufferList* input,
                            const AudioTimeStamp*, AudioBufferList* output, const AudioTimeStamp*,
                            void* clientData) {
        auto& self = *static_cast<GainTap*>(clientData);
        ++self.calls_;
        self.shape_ = shapeOf(*input, *output);
        const std::size_t inputs = self.shape_.inputBuffers * self.shape_.inputChannels;
        const std::size_t outputs = self.shape_.outputBuffers * self.shape_.outputChannels;
        for (std::size_t channel = 0; channel < std::min(inputs, outputs); ++channel)
            self.copy(*input, *output, channel);
        return noErr;
    }

    static Shape shapeOf(const AudioBufferList& input, const AudioBufferList& output) {
        Shape shape;
        shape.inputBuffers = input.count();
        shape.inputChannels = input.count() > 0 ? input[0].mNumberChannels : 0;
        shape.outputBuffers = output.count();
        shape.outputChannels = output.count() > 0 ? output[0].mNumberChannels : 0;
        shape.outputBytes = output.count() > 0 ? output[0].mDataByteSize : 0;
        return shape;
    }

    void copy(const AudioBufferList& input, const AudioBufferList& output,
              std::size_t channel) const {
        const AudioBuffer& from = input[shape_.inputBuffers > 1 ? channel : 0];
        const AudioBuffer& to = output[shape_.outputBuffers > 1 ? channel : 0];
        const float* source = from.samples() + (shape_.inputBuffers > 1 ? 0 : channel);
        float* target = to.samples() + (shape_.outputBuffers > 1 ? 0 : channel);
        const std::size_t frames = to.sampleCount() / to.mNumberChannels;
        for (std::size_t frame = 0; frame < frames; ++frame)
            target[frame * to.mNumberChannels] = gain_ * source[frame * from.mNumberChannels];
    }

    static bool rests(const void* clientData) noexcept {
        // The question is asked of const data; counting the questions is this test's own affair.
        const auto& self = *static_cast<const GainTap*>(clientData);
        ++self.restQuestions_;
        return self.atRest;
    }

    AudioHardware& hardware_;
    float gain_;
    std::string uuid_;
    int builds_ = 0;
    AudioObjectID tap_ = 0;
    AudioObjectID aggregate_ = 0;
    AudioDeviceIOProcID proc_ = nullptr;
    std::atomic<std::uint64_t> calls_ = 0;
    mutable std::atomic<std::uint64_t> restQuestions_ = 0;
    Shape shape_;
};

} // namespace orvanta::test
