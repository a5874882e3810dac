#include "tests/platform/pipewire/support/PlayedTap.h"

#include <chrono>
#include <stdexcept>

namespace orvanta::test {
namespace {

void require(OSStatus status, const char* what) {
    if (status != noErr)
        throw std::runtime_error(std::string(what) + ": status " + std::to_string(status));
}

/// Takes its time without sleeping, which an IO thread may not.
void keepBusy(std::chrono::milliseconds time) {
    const auto until = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < until) {
    }
}

} // namespace

PlayedTap::PlayedTap(AudioHardware& hardware, AudioObjectID process, const std::string& deviceUID)
    : hardware_(hardware) {
    auto description = CATapDescription::stereoMixdownOfProcesses({process});
    description.setName("Played tap");
    description.setMuteBehavior(CATapMuted);
    description.setPrivate(true);
    tapUUID_ = description.UUID();
    require(hardware_.createProcessTap(description, tap_), "createProcessTap");
    try {
        play(deviceUID);
    } catch (...) {
        takeDown();
        throw;
    }
}

PlayedTap::~PlayedTap() {
    takeDown();
}

void PlayedTap::takeDown() {
    hardware_.destroyProcessTap(tap_);
    stop();
}

void PlayedTap::play(const std::string& deviceUID) {
    AggregateDeviceDescription description;
    description.uid = "aggregate-of-" + tapUUID_;
    description.name = "Aggregate";
    description.taps = {tapUUID_};
    description.subDevices = {deviceUID};
    description.master = deviceUID;
    require(hardware_.createAggregateDevice(description, aggregate_), "createAggregateDevice");
    const auto isAtRest = [](const void* clientData) noexcept {
        return static_cast<const PlayedTap*>(clientData)->isAtRest_.load();
    };
    require(hardware_.createIOProcID(aggregate_, {cycle, this, isAtRest}, procID_),
            "createIOProcID");
    require(hardware_.startDevice(aggregate_, procID_), "startDevice");
}

void PlayedTap::startAgain() {
    require(hardware_.startDevice(aggregate_, procID_), "startDevice");
}

void PlayedTap::stop() {
    if (aggregate_ == kAudioObjectUnknown)
        return;
    hardware_.stopDevice(aggregate_, procID_);
    hardware_.destroyIOProcID(aggregate_, procID_);
    hardware_.destroyAggregateDevice(aggregate_);
    aggregate_ = kAudioObjectUnknown;
}

OSStatus PlayedTap::cycle(AudioObjectID, const AudioTimeStamp*, const AudioBufferList* input,
                          const AudioTimeStamp*, AudioBufferList* output, const AudioTimeStamp*,
                          void* clientData) {
    auto& self = *static_cast<PlayedTap*>(clientData);
    self.inCall_ = true;
    if (const int delay = self.dawdleMs_; delay > 0)
        keepBusy(std::chrono::milliseconds(delay));
    float level = 0;
    for (std::size_t channel = 0; channel < input->count(); ++channel)
        for (std::size_t frame = 0; frame < (*input)[channel].sampleCount(); ++frame) {
            const float sample = (*input)[channel].samples()[frame];
            level = std::max(level, sample);
            (*output)[channel].samples()[frame] = 0.5F * sample;
        }
    self.input_ = level;
    ++self.cycles_;
    self.inCall_ = false;
    return noErr;
}

} // namespace orvanta::test
