#include "platform/embedded/objects/Objects.h"

#include <algorithm>

namespace orvanta::embedded {

IOProc* DeviceRecord::proc(AudioDeviceIOProcID procID) {
    const auto found = std::find_if(procs.begin(), procs.end(),
                                    [=](const IOProc& proc) { return proc.id == procID; });
    return found == procs.end() ? nullptr : &*found;
}

VolumeElement* DeviceRecord::volume(AudioObjectPropertyElement element) {
    const auto found =
        std::find_if(volumes.begin(), volumes.end(),
                     [=](const VolumeElement& volume) { return volume.element == element; });
    return found == volumes.end() ? nullptr : &*found;
}

const VolumeElement* DeviceRecord::volume(AudioObjectPropertyElement element) const {
    const auto found =
        std::find_if(volumes.begin(), volumes.end(),
                     [=](const VolumeElement& volume) { return volume.element == element; });
    return found == volumes.end() ? nullptr : &*found;
}

bool Tap::lists(AudioObjectID process) const {
    const auto& processes = description.processes();
    return std::find(processes.begin(), processes.end(), process) != processes.end();
}

} // namespace orvanta::embedded
