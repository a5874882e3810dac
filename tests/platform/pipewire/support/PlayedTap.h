#pragma once

#include "core/platform/AudioHardware.h"

#include <atomic>
#include <string>

namespace orvanta::test {

/// A tap on one process, played on one device by an IOProc that halves what it gets and counts.
/// Every step is one call of the port, made in the order in which the engine makes them. Throws
/// std::runtime_error on any status but `noErr`, and takes down what there was until then.
class PlayedTap {
public:
    PlayedTap(AudioHardware& hardware, AudioObjectID process, const std::string& deviceUID);
    PlayedTap(const PlayedTap&) = delete;
    PlayedTap& operator=(const PlayedTap&) = delete;
    ~PlayedTap();

    /// Stops and takes the aggregate away; the tap stays.
    void stop();
    /// Starts the IOProc once more, which wakes it.
    void startAgain();
    /// A new aggregate on the same tap.
    void play(const std::string& deviceUID);

    void comeToRest(bool isAtRest) { isAtRest_ = isAtRest; }

    /// From now on every call of the IOProc takes this long.
    void dawdle(int milliseconds) { dawdleMs_ = milliseconds; }

    [[nodiscard]] bool isInCall() const { return inCall_; }

    [[nodiscard]] std::uint64_t cycles() const { return cycles_; }

    /// Level of the last cycle's input.
    [[nodiscard]] float input() const { return input_; }

    [[nodiscard]] AudioObjectID tap() const { return tap_; }

    [[nodiscard]] AudioObjectID aggregate() const { return aggregate_; }

private:
    void takeDown();
    static OSStatus cycle(AudioObjectID device, const AudioTimeStamp* now,
                          const AudioBufferList* input, const AudioTimeStamp* inputTime,
                          AudioBufferList* output, const AudioTimeStamp* outputTime,
                          void* clientData);

    AudioHardware& hardware_;
    std::string tapUUID_;
    AudioObjectID tap_ = kAudioObjectUnknown;
    AudioObjectID aggregate_ = kAudioObjectUnknown;
    AudioDeviceIOProcID procID_ = nullptr;
    std::atomic<std::uint64_t> cycles_{0};
    std::atomic<float> input_{0};
    std::atomic<bool> inCall_{false};
    std::atomic<bool> isAtRest_{false};
    std::atomic<int> dawdleMs_{0};
};

} // namespace orvanta::test
