#pragma once

#include "core/platform/AudioHardware.h"
#include "platform/embedded/ProgramSettings.h"
#include "platform/embedded/cycle/DeviceIO.h"
#include "platform/embedded/cycle/IOClient.h"
#include "platform/embedded/cycle/Tape.h"
#include "platform/embedded/cycle/Voice.h"
#include "platform/embedded/cycle/WavRecorder.h"

/// What the server keeps of each object. Plain records; ObjectSpace holds them.
namespace orvanta::embedded {

/// Hz, where nothing tells a rate.
inline constexpr double kFallbackSampleRate = 48000;

/// A registered IOProc, as control sees it.
struct IOProc {
    AudioDeviceIOProcID id = nullptr;
    std::shared_ptr<IOClient> client;
    unsigned starts = 0;
};

/// What devices and aggregates have in common.
struct DeviceRecord {
    AudioObjectID id = kAudioObjectUnknown;
    double sampleRate = 0;
    std::vector<VolumeElement> volumes;
    std::vector<AudioObjectID> inputStreams;
    std::vector<AudioObjectID> outputStreams;
    /// Of all streams of that side together.
    std::uint32_t inputChannels = 0;
    std::uint32_t outputChannels = 0;
    std::vector<IOProc> procs;

    [[nodiscard]] IOProc* proc(AudioDeviceIOProcID procID);
    [[nodiscard]] VolumeElement* volume(AudioObjectPropertyElement element);
    [[nodiscard]] const VolumeElement* volume(AudioObjectPropertyElement element) const;
};

struct Device : DeviceRecord {
    DeviceSettings settings;
    std::shared_ptr<DeviceIO> io;
    std::shared_ptr<Tape> tape;
    std::shared_ptr<WavRecorder> recorder;
};

struct Aggregate : DeviceRecord {
    AggregateDeviceDescription description;
    std::shared_ptr<VolumeControls> volumeControls;
};

struct Tap {
    AudioObjectID id = kAudioObjectUnknown;
    CATapDescription description;

    [[nodiscard]] bool lists(AudioObjectID process) const;
};

struct Program {
    AudioObjectID id = kAudioObjectUnknown;
    ProgramSettings settings;
    bool playing = false;
    std::shared_ptr<Voice> voice;
};

} // namespace orvanta::embedded
