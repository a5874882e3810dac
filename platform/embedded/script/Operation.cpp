#include "platform/embedded/script/Operation.h"

namespace orvanta::embedded {

std::string_view operationName(Operation operation) {
    switch (operation) {
    case Operation::hasProperty:
        return "AudioObjectHasProperty";
    case Operation::isPropertySettable:
        return "AudioObjectIsPropertySettable";
    case Operation::getPropertyDataSize:
        return "AudioObjectGetPropertyDataSize";
    case Operation::getPropertyData:
        return "AudioObjectGetPropertyData";
    case Operation::setPropertyData:
        return "AudioObjectSetPropertyData";
    case Operation::addPropertyListener:
        return "AudioObjectAddPropertyListener";
    case Operation::removePropertyListener:
        return "AudioObjectRemovePropertyListener";
    case Operation::createProcessTap:
        return "AudioHardwareCreateProcessTap";
    case Operation::destroyProcessTap:
        return "AudioHardwareDestroyProcessTap";
    case Operation::createAggregateDevice:
        return "AudioHardwareCreateAggregateDevice";
    case Operation::destroyAggregateDevice:
        return "AudioHardwareDestroyAggregateDevice";
    case Operation::createIOProcID:
        return "AudioDeviceCreateIOProcID";
    case Operation::destroyIOProcID:
        return "AudioDeviceDestroyIOProcID";
    case Operation::startDevice:
        return "AudioDeviceStart";
    case Operation::stopDevice:
        return "AudioDeviceStop";
    }
    return "?";
}

bool isLifecycleOperation(Operation operation) {
    return operation >= Operation::createProcessTap;
}

} // namespace orvanta::embedded
