#pragma once

#include "core/platform/AudioHardware.h"
#include "core/platform/RunLoop.h"
#include "platform/embedded/ProgramSettings.h"
#include "platform/embedded/ServerSettings.h"
#include "platform/embedded/clock/RealTimeClock.h"
#include "platform/embedded/clock/SteppedClock.h"
#include "platform/embedded/objects/ObjectSpace.h"
#include "platform/embedded/script/FaultPlan.h"
#include "platform/embedded/script/Journal.h"
#include "platform/embedded/script/ListenerRegistry.h"
#include "platform/embedded/sounds/BasicSounds.h"

#include <mutex>
#include <string>
#include <vector>

namespace orvanta {

/// An audio system inside the process: devices, programs that play, taps, aggregates and a clock
/// that runs by hand or in real time. What a machine without sound runs on, and what tests drive.
///
///     EmbeddedAudioServer server;
///     auto speakers = server.addDevice({.uid = "speakers", .name = "Speakers"});
///     auto music = server.addProgram({.pid = 100, .name = "Music", .source = tone(440)});
///     server.advance(1s);
///     server.played(speakers);
///
/// Objects. Ids are never used again. 'dev#' lists the devices in the order in which they came,
/// then the aggregates on living devices: this process made them, so it sees the private ones too.
/// When the device of an aggregate is unplugged the aggregate stays an object, 'agrp' is empty and
/// its IOProcs get no cycles; a device of the same UID brings it back to life. An aggregate plays
/// on one device, its master; further sub-devices are listed, but get nothing. Streams have ids,
/// but are no objects to ask.
///
/// Statuses. An unknown object gives kAudioHardwareBadObjectError, a property it lacks
/// kAudioHardwareUnknownPropertyError, a size that does not fit kAudioHardwareBadPropertySizeError,
/// an object that is no device (or no aggregate, where one is asked for)
/// kAudioHardwareBadDeviceError, anything that makes no sense kAudioHardwareIllegalOperationError,
/// the start of an aggregate whose device is gone kAudioHardwareNotRunningError.
///
/// Cycle of a device: its programs, then its IOProcs in the order plain device, aggregates, each
/// with zeroed output in the layout of the device, are added up, then scaled by the device's volume
/// (scalar^3), then kept.
///
/// Threads. Everything here may be called from any thread. Listeners are called on the thread that
/// made the change, after it, with no lock held. A stop, a removal of an IOProc and any other
/// change of what the cycles do return when no cycle that knows nothing of them is in flight,
/// except from within a cycle, where they return at once and no further callback begins. A volume
/// is set without waiting: a cycle in flight may still play at the one before.
class EmbeddedAudioServer : public AudioHardware {
public:
    explicit EmbeddedAudioServer(const embedded::ServerSettings& settings = {});
    /// Ends the clock. IOProcs that still run get no further cycle.
    ~EmbeddedAudioServer() override;

    // Devices. False where there is no such device.
    AudioObjectID addDevice(const embedded::DeviceSettings& settings);
    /// Unplugs it, which also ends its recording. What it has played can still be asked for under
    /// its id.
    bool removeDevice(AudioObjectID device);
    bool renameDevice(AudioObjectID device, const std::string& name);
    /// 0 for none. False for what cannot play.
    bool setDefaultOutput(AudioObjectID device);
    [[nodiscard]] AudioObjectID defaultOutput() const;
    /// As somebody else would set them: whether programs may does not matter.
    bool setVolume(AudioObjectID device, AudioObjectPropertyElement element, float scalar);
    bool setSampleRate(AudioObjectID device, double sampleRate);
    /// 0 when there is none.
    [[nodiscard]] AudioObjectID findDevice(const std::string& uid) const;

    // What a device plays, channels interleaved, or one channel counted from 0. Empty for devices
    // that do not keep it. Cycles that a resting device leaves out in real time leave no gap.
    [[nodiscard]] std::vector<float> played(AudioObjectID device) const;
    [[nodiscard]] std::vector<float> played(AudioObjectID device, std::uint32_t channel) const;
    void clearPlayed(AudioObjectID device);
    /// From now on also into a WAV file, until stopped. False when the file cannot be made.
    bool startRecording(AudioObjectID device, const std::string& path);
    /// Completes the file. Within a cycle, what that cycle plays is not in it any more.
    void stopRecording(AudioObjectID device);
    /// Cycles it has run.
    [[nodiscard]] std::uint64_t cycles(AudioObjectID device) const;

    // Programs, named by their process object. False where there is no such program.
    AudioObjectID addProgram(const embedded::ProgramSettings& settings);
    /// Plays from the beginning of its sound.
    bool startProgram(AudioObjectID program);
    bool pauseProgram(AudioObjectID program);
    bool resumeProgram(AudioObjectID program);
    bool exitProgram(AudioObjectID program);
    bool setSource(AudioObjectID program, const embedded::Sound& source);
    bool setRecording(AudioObjectID program, bool recording);
    /// None: the default output.
    bool moveProgram(AudioObjectID program, std::optional<std::string> deviceUID);
    [[nodiscard]] std::vector<embedded::ProgramState> programs() const;

    // Virtual time, as long as the real-time clock does not run; then these do nothing. Every
    // cycle calls every started IOProc, at rest or not, unless the settings say otherwise.
    void step(AudioObjectID device, unsigned cycles = 1);
    void stepAll(unsigned cycles = 1);
    void advance(Seconds duration);
    /// Time since the start of the server, or of the monotonic clock while that drives it.
    [[nodiscard]] std::uint64_t nowNs() const;

    // Real time. Neither from within an IOProc or a listener.
    void startClock();
    /// Returns when the last cycle is over; virtual time goes on from where it was.
    void stopClock();
    [[nodiscard]] bool isClockRunning() const;

    /// How often the clock has looked for work; stands still while there is none.
    [[nodiscard]] std::uint64_t clockPasses() const { return realTimeClock_.passes(); }

    // Script and record.
    [[nodiscard]] embedded::Journal& journal() { return journal_; }

    [[nodiscard]] embedded::FaultPlan& faults() { return faults_; }

    /// The next calls of an operation fail.
    void failNext(embedded::Operation operation, OSStatus status = kAudioHardwareUnspecifiedError,
                  unsigned times = 1);
    /// Calls the listeners of a property although nothing has changed.
    void notify(AudioObjectID object, const AudioObjectPropertyAddress& address);

    /// What clients have made and not taken down.
    struct Holdings {
        std::vector<AudioObjectID> taps;
        std::vector<AudioObjectID> aggregates;
        std::size_t ioProcs = 0;
        std::size_t startedIOProcs = 0;
        std::size_t listeners = 0;

        friend bool operator==(const Holdings&, const Holdings&) = default;
    };

    [[nodiscard]] Holdings holdings() const;

    // AudioHardware.
    bool hasProperty(AudioObjectID object, const AudioObjectPropertyAddress& address) override;
    OSStatus isPropertySettable(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                bool& outSettable) override;
    OSStatus getPropertyDataSize(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                 std::uint32_t& outSize) override;
    OSStatus getPropertyData(AudioObjectID object, const AudioObjectPropertyAddress& address,
                             std::uint32_t& ioSize, void* outData) override;
    OSStatus getStringProperty(AudioObjectID object, const AudioObjectPropertyAddress& address,
                               std::optional<std::string>& outText) override;
    OSStatus setPropertyData(AudioObjectID object, const AudioObjectPropertyAddress& address,
                             std::uint32_t size, const void* data) override;
    OSStatus addPropertyListener(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                 AudioObjectPropertyListenerProc listener,
                                 void* clientData) override;
    OSStatus removePropertyListener(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                    AudioObjectPropertyListenerProc listener,
                                    void* clientData) override;
    OSStatus createProcessTap(const CATapDescription& description, AudioObjectID& outTap) override;
    OSStatus destroyProcessTap(AudioObjectID tap) override;
    OSStatus createAggregateDevice(const AggregateDeviceDescription& description,
                                   AudioObjectID& outDevice) override;
    OSStatus destroyAggregateDevice(AudioObjectID device) override;
    OSStatus createIOProcID(AudioObjectID device, const AudioDeviceIOClient& client,
                            AudioDeviceIOProcID& outProcID) override;
    OSStatus destroyIOProcID(AudioObjectID device, AudioDeviceIOProcID procID) override;
    OSStatus startDevice(AudioObjectID device, AudioDeviceIOProcID procID) override;
    OSStatus stopDevice(AudioObjectID device, AudioDeviceIOProcID procID) override;

private:
    /// What follows an operation once the lock is let go.
    struct Aftermath {
        embedded::Changes changes;
        std::shared_ptr<embedded::CyclePlan> plan;
    };

    /// Serves a client: fault or body under the lock, the journal, then the aftermath.
    template <typename Body>
    OSStatus serve(embedded::JournalEntry entry, Body body);
    /// The same for the script, without faults and journal.
    template <typename Body>
    auto script(Body body);

    void preparePlan(Aftermath& aftermath);
    void settle(Aftermath& aftermath);

    embedded::FaultPlan faults_;
    embedded::Journal journal_;
    embedded::ListenerRegistry listeners_;

    /// Guards the objects. Held for no longer than a look-up or the composing of a plan, and never
    /// while a cycle, a listener or another thread is waited for.
    mutable std::mutex mutex_;
    embedded::ObjectSpace objects_;
    std::uint64_t lastPlan_ = 0;

    embedded::CycleGate gate_;
    embedded::SteppedClock steppedClock_;
    embedded::RealTimeClock realTimeClock_;
    /// Guards the coming and going of the real-time clock.
    mutable std::mutex clockMutex_;
    std::atomic<bool> inRealTime_ = false;
};

} // namespace orvanta
