#pragma once

#include "core/platform/AudioObject.h"

#include <string>
#include <vector>

namespace orvanta::embedded {

/// How the samples of several channels lie in the buffers of an IO cycle.
enum class BufferLayout {
    interleaved, ///< one buffer, the channels of a frame side by side
    planar,      ///< one buffer for each channel
};

/// One volume control of a device: its scalar from 0 to 1 is heard as a gain of scalar^3.
struct VolumeElement {
    /// 0 is the whole device, 1 and 2 are its first two channels.
    AudioObjectPropertyElement element = kAudioObjectPropertyElementMain;
    float scalar = 1.0F;
    bool settable = true;
};

/// What a device is. Nonsense is put right rather than refused: an empty UID becomes
/// "device-<id>", an empty name the UID, a rate that is not above zero 48000 Hz, no frames one.
struct DeviceSettings {
    std::string uid = {};
    std::string name = {};
    std::string manufacturer = {};
    FourCharCode transport = kAudioDeviceTransportTypeBuiltIn;
    /// Hz.
    double sampleRate = 48000;
    /// Whether programs may set the nominal rate, and to which rates; none listed means any.
    bool sampleRateSettable = false;
    std::vector<double> sampleRates = {};
    std::uint32_t framesPerCycle = 512;
    /// Channels it plays; 0 is a device that only records, which never becomes the default.
    std::uint32_t channels = 2;
    BufferLayout layout = BufferLayout::interleaved;
    std::vector<VolumeElement> volumes = {VolumeElement{}};
    /// Recording streams it reports; they deliver nothing.
    std::uint32_t inputStreams = 0;
    /// Keeps everything it plays in memory, for `played`. Off in programs that run for long.
    bool keepsPlayed = true;
};

} // namespace orvanta::embedded
