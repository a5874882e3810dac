#include "core/platform/TapDescription.h"

#include "core/platform/UUID.h"

#include <utility>

namespace orvanta {

CATapDescription CATapDescription::stereoMixdownOfProcesses(std::vector<AudioObjectID> processes) {
    CATapDescription description;
    description.processes_ = std::move(processes);
    description.uuid_ = UUID::random().uuidString();
    return description;
}

} // namespace orvanta
