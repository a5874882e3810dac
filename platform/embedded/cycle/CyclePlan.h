#pragma once

#include "core/platform/AudioBufferList.h"
#include "platform/embedded/cycle/DeviceIO.h"
#include "platform/embedded/cycle/IOClient.h"
#include "platform/embedded/cycle/Tape.h"
#include "platform/embedded/cycle/Voice.h"
#include "platform/embedded/cycle/WavRecorder.h"

#include <memory>
#include <vector>

/// What the cycles do until the next change: composed on the control side after every change, with
/// all memory they need, and handed over between two cycles. So a cycle finds nothing to lock, to
/// look up or to allocate, but for what a device keeps of its sound: a tape takes memory as it
/// grows, and a recorder writes to its file.
namespace orvanta::embedded {

/// A program in the cycle of the device that drives it.
struct ProgramPlan {
    std::shared_ptr<Voice> voice;
    std::uint32_t channels = 0;
    bool playing = false;
    /// False while a muting tap cuts its path: its sound is made, but does not reach the device.
    bool audible = true;
    /// Its sound of the present cycle.
    std::vector<float> block;
};

/// The buffers of one side of an IO cycle with the memory behind them.
struct IOBuffers {
    /// Appends the buffers of one more stream; before the first cycle only.
    void add(BufferLayout layout, std::uint32_t channels, std::uint32_t frames);
    /// Zeros everywhere, and the buffers as they were added, whatever a callee made of them.
    void reset() noexcept;

    std::vector<std::vector<float>> memory;
    std::vector<AudioBuffer> buffers;
};

/// A tap that is input of an aggregate.
struct TapPlan {
    /// Index of its first buffer among the inputs; its second is the next one when planar.
    std::size_t firstBuffer = 0;
    /// Indexes of its programs in the device's plan.
    std::vector<std::size_t> programs;
};

/// A started IOProc.
struct ClientPlan {
    std::shared_ptr<IOClient> client;
    /// How many times it was started.
    unsigned start = 0;
    BufferLayout tapLayout = BufferLayout::interleaved;
    std::vector<TapPlan> taps;
    IOBuffers inputs;
    IOBuffers outputs;
    /// Volume of the aggregate; null on a plain device.
    std::shared_ptr<const VolumeControls> volume;
};

struct DevicePlan {
    AudioObjectID device = kAudioObjectUnknown;
    std::uint32_t channels = 0;
    std::uint32_t frames = 0;
    double sampleRate = 0;
    BufferLayout layout = BufferLayout::interleaved;
    std::shared_ptr<DeviceIO> io;
    /// Null when the device does not keep what it plays.
    std::shared_ptr<Tape> tape;
    std::shared_ptr<WavRecorder> recorder;
    std::vector<ProgramPlan> programs;
    std::vector<ClientPlan> clients;
    /// What the device plays in the present cycle, interleaved.
    std::vector<float> mix;
    /// A tap's stereo form, before it is laid out.
    std::vector<float> stereo;
};

struct CyclePlan {
    /// Grows with every plan.
    std::uint64_t sequence = 0;
    /// Whether IOProcs at rest are left out.
    bool restsWhenStepped = false;
    std::vector<DevicePlan> devices;
    /// Once it is replaced: the plan that was replaced before it and still waits to be freed.
    std::shared_ptr<CyclePlan> retiredBefore;
};

} // namespace orvanta::embedded
