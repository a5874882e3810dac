#include "core/engine/TapState.h"

#include <cfloat>
#include <utility>

namespace orvanta {

TapState::TapState(std::int32_t ownerPID, AudioObjectID processObject, AudioObjectID tap,
                   std::string uuid, AudioObjectID mixDevice, FirstCallbackLog& log)
    : pid(ownerPID),
      audioObjectID(processObject),
      tapID(tap),
      tapUUID(std::move(uuid)),
      mixDeviceID(mixDevice),
      firstCallbackLog(log) {}

bool TapState::isAtRest() const noexcept {
    return hasSettled() && !isRecording();
}

bool TapState::hasSettled() const noexcept {
    if (peakLevel.load() != 0.0F || rmsLevel.load() != 0.0F ||
        silentCallbackCount.load() < kSilentCallbacksBeforeBypass)
        return false;
    if (!noiseGateEnabled.load())
        return true;
    // The callback compares with subnormal numbers as zero.
    const bool silenceOpensIt = noiseGateThresholdLinear.load() < FLT_MIN;
    return silenceOpensIt ? gateFadeGain.load() >= 1.0F
                          : !gateOpen.load() && gateFadeGain.load() <= 0.0F;
}

bool TapState::isRecording() const noexcept {
    return (recorder && recorder->isRecording()) || (dryRecorder && dryRecorder->isRecording());
}

} // namespace orvanta
