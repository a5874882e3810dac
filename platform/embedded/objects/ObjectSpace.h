#pragma once

#include "platform/embedded/ServerSettings.h"
#include "platform/embedded/objects/Changes.h"
#include "platform/embedded/objects/Objects.h"

#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace orvanta::embedded {

/// All objects of a server and the rules of how they come, change and go. Not safe by itself: the
/// server's lock is held around every use. Every operation notes in `changes` what must follow.
class ObjectSpace {
public:
    explicit ObjectSpace(ServerSettings settings) : settings_(std::move(settings)) {}

    [[nodiscard]] const ServerSettings& settings() const { return settings_; }

    // Devices.
    AudioObjectID addDevice(const DeviceSettings& settings, std::uint64_t nowNs, Changes& changes);
    bool removeDevice(AudioObjectID device, Changes& changes);
    bool renameDevice(AudioObjectID device, const std::string& name, Changes& changes);
    OSStatus setSampleRate(AudioObjectID device, double sampleRate, Changes& changes);
    OSStatus setVolume(AudioObjectID device, AudioObjectPropertyElement element, float scalar,
                       Changes& changes);
    /// 0 for none. False if it is no device that plays.
    bool setDefaultOutput(AudioObjectID device, Changes& changes);

    [[nodiscard]] AudioObjectID defaultOutput() const { return defaultOutput_; }

    /// Null when the device keeps nothing. That of a device that is gone stays.
    [[nodiscard]] std::shared_ptr<const Tape> tape(AudioObjectID device) const;
    bool clearTape(AudioObjectID device, Changes& changes);
    /// Null ends the recording.
    bool setRecorder(AudioObjectID device, std::shared_ptr<WavRecorder> recorder, Changes& changes);

    // Programs.
    AudioObjectID addProgram(const ProgramSettings& settings, Changes& changes);
    bool removeProgram(AudioObjectID program, Changes& changes);
    bool setPlaying(AudioObjectID program, bool playing, Changes& changes);
    /// From the beginning of its sound.
    bool startProgram(AudioObjectID program, Changes& changes);
    bool setSource(AudioObjectID program, const Sound& source, Changes& changes);
    bool setRecording(AudioObjectID program, bool recording, Changes& changes);
    bool moveProgram(AudioObjectID program, std::optional<std::string> deviceUID, Changes& changes);

    // What clients make.
    OSStatus createTap(const CATapDescription& description, AudioObjectID& outTap,
                       Changes& changes);
    OSStatus destroyTap(AudioObjectID tap, Changes& changes);
    OSStatus createAggregate(const AggregateDeviceDescription& description,
                             AudioObjectID& outDevice, Changes& changes);
    OSStatus destroyAggregate(AudioObjectID aggregate, Changes& changes);
    OSStatus createProc(AudioObjectID device, const AudioDeviceIOClient& client,
                        AudioDeviceIOProcID& outProcID);
    OSStatus destroyProc(AudioObjectID device, AudioDeviceIOProcID procID, Changes& changes);
    OSStatus startProc(AudioObjectID device, AudioDeviceIOProcID procID, Changes& changes);
    OSStatus stopProc(AudioObjectID device, AudioDeviceIOProcID procID, Changes& changes);

    // Looking up; null when there is no such object.
    [[nodiscard]] bool contains(AudioObjectID object) const;
    [[nodiscard]] Device* device(AudioObjectID id);
    [[nodiscard]] const Device* device(AudioObjectID id) const;
    [[nodiscard]] const Device* device(const std::string& uid) const;
    [[nodiscard]] Aggregate* aggregate(AudioObjectID id);
    [[nodiscard]] const Aggregate* aggregate(AudioObjectID id) const;
    [[nodiscard]] Program* program(AudioObjectID id);
    [[nodiscard]] const Program* program(AudioObjectID id) const;
    [[nodiscard]] const Tap* tap(AudioObjectID id) const;
    [[nodiscard]] const Tap* tap(const std::string& uuid) const;
    /// A device or an aggregate.
    [[nodiscard]] DeviceRecord* anyDevice(AudioObjectID id);

    /// The living sub-devices of an aggregate, and the one of them that it plays on.
    [[nodiscard]] std::vector<AudioObjectID> activeSubDevices(const Aggregate& aggregate) const;
    [[nodiscard]] const Device* mainDevice(const Aggregate& aggregate) const;
    /// Where a program plays when nothing moves it: its chosen device or the default output.
    [[nodiscard]] const Device* homeDevice(const Program& program) const;
    /// 48000 when no device says otherwise.
    [[nodiscard]] double tapSampleRate(const Tap& tap) const;

    template <typename Object>
    using Objects = std::vector<std::unique_ptr<Object>>;

    [[nodiscard]] const Objects<Device>& devices() const { return devices_; }

    [[nodiscard]] const Objects<Aggregate>& aggregates() const { return aggregates_; }

    [[nodiscard]] const Objects<Program>& programs() const { return programs_; }

    [[nodiscard]] const Objects<Tap>& taps() const { return taps_; }

private:
    AudioObjectID newID() { return ++lastID_; }

    std::vector<AudioObjectID> newIDs(std::size_t count);
    [[nodiscard]] AudioObjectID firstPlayingDevice() const;
    void noteSubDevicesChanged(const std::string& uid, Changes& changes) const;
    /// `noErr` and the device, or why there is none that takes IOProcs.
    OSStatus findForIO(AudioObjectID id, DeviceRecord*& outDevice);
    OSStatus findProc(AudioObjectID device, AudioDeviceIOProcID procID, IOProc*& outProc);

    ServerSettings settings_;
    Objects<Device> devices_;
    Objects<Aggregate> aggregates_;
    Objects<Program> programs_;
    Objects<Tap> taps_;
    std::map<AudioObjectID, std::shared_ptr<const Tape>> oldTapes_;
    AudioObjectID defaultOutput_ = kAudioObjectUnknown;
    AudioObjectID lastID_ = kAudioObjectSystemObject;
    std::uintptr_t lastProcID_ = 0;
};

} // namespace orvanta::embedded
