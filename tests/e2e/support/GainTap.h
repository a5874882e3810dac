#pragma once

#include "core/platform/AudioHardware.h"

#include <atomic>
#include <string>

namespace orvanta::test {

/// The least one can do with the port: a tap on one process, played with a gain on one device,
/// which can change. Throws std::runtime_error on any status but `noErr`.
class GainTap {
public:
    GainTap(AudioHardware& hardware, AudioObjectID process, const std::string& deviceUID,
            float gain);
    GainTap(const GainTap&) = delete;
    GainTap& operator=(const GainTap&) = delete;
    /// The process first gets its own path back.
    ~GainTap();

    /// Another aggregate on the same tap, as a re-route does it.
    void moveTo(const std::string& deviceUID);

    [[nodiscard]] std::uint64_t cycles() const { return cycles_.load(std::memory_order_relaxed); }

private:
    void play(const std::string& deviceUID);
    void stop();
    static OSStatus cycle(AudioObjectID device, const AudioTimeStamp* now,
                          const AudioBufferList* input, const AudioTimeStamp* inputTime,
                          AudioBufferList* output, const AudioTimeStamp* outputTime,
                          void* clientData);

    AudioHardware& hardware_;
    const float gain_;
    std::atomic<std::uint64_t> cycles_{0};
    AudioObjectID tap_ = kAudioObjectUnknown;
    AudioObjectID aggregate_ = kAudioObjectUnknown;
    AudioDeviceIOProcID procID_ = nullptr;
    std::string tapUUID_;
};

} // namespace orvanta::test
