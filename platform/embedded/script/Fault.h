#pragma once

#include "core/platform/AudioObject.h"
#include "platform/embedded/script/Operation.h"

#include <optional>

namespace orvanta::embedded {

/// What goes wrong.
enum class FaultEffect {
    failure,    ///< nothing is done and `status` is answered; a property is not there
    nullString, ///< a string read succeeds with a null string
    nullProcID, ///< making an IOProc succeeds with a null id; nothing is registered
    givesBytes, ///< a size read answers `bytes`; a data read fills no more than `bytes`
};

/// Makes calls go wrong. Every field that is set must fit a call for the fault to strike.
struct Fault {
    Operation operation = Operation::getPropertyData;
    FaultEffect effect = FaultEffect::failure;
    OSStatus status = kAudioHardwareUnspecifiedError;
    std::uint32_t bytes = 0;

    /// How many fitting calls it strikes; none: until it is removed.
    std::optional<unsigned> times = std::nullopt;
    /// Fitting calls that pass unharmed before the first one it strikes.
    unsigned skip = 0;

    std::optional<AudioObjectID> object = std::nullopt;
    std::optional<AudioObjectPropertySelector> selector = std::nullopt;
    std::optional<AudioObjectPropertyScope> scope = std::nullopt;
    std::optional<AudioObjectPropertyElement> element = std::nullopt;
};

} // namespace orvanta::embedded
