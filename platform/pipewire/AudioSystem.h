#pragma once

#include "platform/pipewire/Aggregates.h"
#include "platform/pipewire/PipeWireAudioHardware.h"
#include "platform/pipewire/StaleTargets.h"
#include "platform/pipewire/Surroundings.h"
#include "platform/pipewire/Taps.h"

namespace orvanta::pipewire {

/// Everything behind `PipeWireAudioHardware`, and the one place that knows in which order the parts
/// take in what has changed.
class AudioSystem final : private ConnectionListener {
public:
    AudioSystem(PipeWireOptions options, SystemLog& log);
    ~AudioSystem() override;
    AudioSystem(const AudioSystem&) = delete;
    AudioSystem& operator=(const AudioSystem&) = delete;

    [[nodiscard]] ControlLoop& loop() { return loop_; }

    [[nodiscard]] PropertyListeners& listeners() { return listeners_; }

    // With the lock held from here on. Some release it while they wait.

    [[nodiscard]] Taps& taps() { return parts_->taps; }

    [[nodiscard]] Aggregates& aggregates() { return parts_->aggregates; }

    [[nodiscard]] const ProcessObjects& processes() const { return parts_->processes; }

    /// Waits, two seconds at the most, until the first server has told all it has, or turned out
    /// not to be there.
    void waitForFirstAnswer();

    [[nodiscard]] bool hasServer() const { return parts_->connection.isAnswering(); }

    PropertyAnswer read(AudioObjectID object, const AudioObjectPropertyAddress& address);
    OSStatus isSettable(AudioObjectID object, const AudioObjectPropertyAddress& address,
                        bool& outSettable);
    OSStatus write(AudioObjectID object, const AudioObjectPropertyAddress& address,
                   const void* data, std::uint32_t size);

private:
    /// All that needs a usable loop, in the order in which it is built.
    struct Parts {
        Parts(AudioSystem& system, PipeWireOptions options);

        ServerMirror mirror;
        ProcessObjects processes;
        OutputDevices devices;
        ServerConnection connection;
        StaleTargets staleTargets;
        Surroundings surroundings;
        Taps taps;
        Aggregates aggregates;
    };

    void serverConnected(pw_core* core) override;
    void serverAnswered() override;
    void serverAnswersAgain() override;
    void serverLost() override;

    void scheduleUpdate();
    void update();
    PropertyAnswer readSystem(const AudioObjectPropertyAddress& address);
    [[nodiscard]] double graphRate() const;

    Logger logger_;
    PropertyListeners listeners_;
    ControlLoop loop_;
    ObjectIds ids_;
    std::unique_ptr<ControlTimer> updateTimer_;
    std::unique_ptr<Parts> parts_;
    std::chrono::steady_clock::time_point firstAnswerDeadline_;
    bool firstAnswerIsOver_ = false;
    bool everAnswered_ = false;
};

} // namespace orvanta::pipewire
