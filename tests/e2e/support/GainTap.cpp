#include "tests/e2e/support/GainTap.h"

#include "core/platform/RealTimeSection.h"

#include <algorithm>
#include <stdexcept>

namespace orvanta::test {

namespace {

void require(OSStatus status, const char* what) {
    if (status != noErr)
        throw std::runtime_error(std::string(what) + " failed with " + std::to_string(status));
}

} // namespace

GainTap::GainTap(AudioHardware& hardware, AudioObjectID process, const std::string& deviceUID,
                 float gain)
    : hardware_(hardware), gain_(gain) {
    auto description = CATapDescription::stereoMixdownOfProcesses({process});
    description.setName("e2e");
    description.setMuteBehavior(CATapMuted);
    description.setPrivate(true);
    tapUUID_ = description.UUID();
    require(hardware_.createProcessTap(description, tap_), "createProcessTap");
    play(deviceUID);
}

GainTap::~GainTap() {
    hardware_.destroyProcessTap(tap_);
    stop();
}

void GainTap::moveTo(const std::string& deviceUID) {
    stop();
    play(deviceUID);
}

void GainTap::play(const std::string& deviceUID) {
    AggregateDeviceDescription description;
    static std::atomic<int> count{0};
    description.uid = "e2e-aggregate-" + std::to_string(++count);
    description.name = "e2e";
    description.taps = {tapUUID_};
    description.subDevices = {deviceUID};
    description.master = deviceUID;
    require(hardware_.createAggregateDevice(description, aggregate_), "createAggregateDevice");
    require(hardware_.createIOProcID(aggregate_, {cycle, this, nullptr}, procID_),
            "createIOProcID");
    require(hardware_.startDevice(aggregate_, procID_), "startDevice");
}

void GainTap::stop() {
    hardware_.stopDevice(aggregate_, procID_);
    hardware_.destroyIOProcID(aggregate_, procID_);
    hardware_.destroyAggregateDevice(aggregate_);
}

OSStatus GainTap::cycle(AudioObjectID, const AudioTimeStamp*, const AudioBufferList* input,
                        const AudioTimeStamp*, AudioBufferList* output, const AudioTimeStamp*,
                        void* clientData) {
    const RealTimeSection realTime;
    auto& self = *static_cast<GainTap*>(clientData);
    const std::size_t pairs = std::min(input->count(), output->count());
    for (std::size_t index = 0; index < pairs; ++index) {
        const AudioBuffer& in = (*input)[index];
        const AudioBuffer& out = (*output)[index];
        if (in.mData == nullptr || out.mData == nullptr)
            continue;
        const std::size_t samples = std::min(in.sampleCount(), out.sampleCount());
        for (std::size_t sample = 0; sample < samples; ++sample)
            out.samples()[sample] = in.samples()[sample] * self.gain_;
    }
    self.cycles_.fetch_add(1, std::memory_order_relaxed);
    return noErr;
}

} // namespace orvanta::test
