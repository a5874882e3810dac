#pragma once

#include <string_view>

namespace orvanta::embedded {

/// The calls a client of the audio system can make. Strings and plain data are read with one and
/// the same operation.
enum class Operation {
    hasProperty,
    isPropertySettable,
    getPropertyDataSize,
    getPropertyData,
    setPropertyData,
    addPropertyListener,
    removePropertyListener,
    createProcessTap,
    destroyProcessTap,
    createAggregateDevice,
    destroyAggregateDevice,
    createIOProcID,
    destroyIOProcID,
    startDevice,
    stopDevice,
};

/// As Core Audio spells it: "AudioHardwareCreateProcessTap".
std::string_view operationName(Operation operation);

/// Whether it makes, ends, starts or stops something, rather than reads or sets a property.
bool isLifecycleOperation(Operation operation);

} // namespace orvanta::embedded
