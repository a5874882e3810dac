#include "platform/embedded/objects/ObjectSpace.h"

#include <algorithm>
#include <cmath>

namespace orvanta::embedded {

namespace {

bool isUsableRate(double sampleRate) {
    return std::isfinite(sampleRate) && sampleRate > 0;
}

DeviceSettings putRight(DeviceSettings settings, AudioObjectID id) {
    if (settings.uid.empty())
        settings.uid = "device-" + std::to_string(id);
    if (settings.name.empty())
        settings.name = settings.uid;
    if (!isUsableRate(settings.sampleRate))
        settings.sampleRate = kFallbackSampleRate;
    settings.framesPerCycle = std::max(settings.framesPerCycle, 1U);
    return settings;
}

std::size_t streamCount(const DeviceSettings& settings) {
    if (settings.layout == BufferLayout::planar)
        return settings.channels;
    return settings.channels > 0 ? 1 : 0;
}

bool offersRate(const DeviceSettings& settings, double sampleRate) {
    const auto& rates = settings.sampleRates;
    return rates.empty() || std::find(rates.begin(), rates.end(), sampleRate) != rates.end();
}

} // namespace

AudioObjectID ObjectSpace::addDevice(const DeviceSettings& wanted, std::uint64_t nowNs,
                                     Changes& changes) {
    auto device = std::make_unique<Device>();
    device->id = newID();
    device->settings = putRight(wanted, device->id);
    const DeviceSettings& settings = device->settings;
    device->sampleRate = settings.sampleRate;
    device->volumes = settings.volumes;
    device->outputStreams = newIDs(streamCount(settings));
    device->outputChannels = settings.channels;
    device->inputStreams = newIDs(settings.inputStreams);
    device->inputChannels = settings.inputStreams;
    device->io = std::make_shared<DeviceIO>(nowNs, settings.sampleRate, settings.volumes);
    if (settings.keepsPlayed)
        device->tape = std::make_shared<Tape>(settings.channels);

    const AudioObjectID id = device->id;
    devices_.push_back(std::move(device));
    changes.replan = true;
    changes.notify(kAudioObjectSystemObject, kAudioHardwarePropertyDevices);
    noteSubDevicesChanged(settings.uid, changes);
    if (settings_.choosesDefaultOutput && defaultOutput_ == kAudioObjectUnknown &&
        settings.channels > 0)
        setDefaultOutput(id, changes);
    return id;
}

bool ObjectSpace::removeDevice(AudioObjectID id, Changes& changes) {
    const auto found = std::find_if(devices_.begin(), devices_.end(),
                                    [=](const auto& device) { return device->id == id; });
    if (found == devices_.end())
        return false;
    const std::string uid = (*found)->settings.uid;
    for (const IOProc& proc : (*found)->procs)
        proc.client->setStarted(false);
    if ((*found)->recorder)
        changes.ended.push_back((*found)->recorder);
    if ((*found)->tape)
        oldTapes_[id] = (*found)->tape;
    devices_.erase(found);
    changes.replan = true;
    changes.gone.push_back(id);
    changes.notify(kAudioObjectSystemObject, kAudioHardwarePropertyDevices);
    noteSubDevicesChanged(uid, changes);
    if (defaultOutput_ == id) {
        setDefaultOutput(
            settings_.choosesDefaultOutput ? firstPlayingDevice() : kAudioObjectUnknown, changes);
    }
    return true;
}

bool ObjectSpace::renameDevice(AudioObjectID id, const std::string& name, Changes& changes) {
    Device* found = device(id);
    if (found == nullptr)
        return false;
    found->settings.name = name;
    changes.notify(id, kAudioObjectPropertyName);
    changes.notify(kAudioObjectSystemObject, kAudioHardwarePropertyDevices);
    return true;
}

bool ObjectSpace::setDefaultOutput(AudioObjectID id, Changes& changes) {
    const Device* found = device(id);
    const bool plays = found != nullptr && found->settings.channels > 0;
    if (id != kAudioObjectUnknown && !plays)
        return false;
    if (defaultOutput_ == id)
        return true;
    defaultOutput_ = id;
    changes.replan = true;
    changes.notify(kAudioObjectSystemObject, kAudioHardwarePropertyDefaultOutputDevice);
    return true;
}

std::shared_ptr<const Tape> ObjectSpace::tape(AudioObjectID id) const {
    if (const Device* found = device(id); found != nullptr)
        return found->tape;
    const auto old = oldTapes_.find(id);
    return old == oldTapes_.end() ? nullptr : old->second;
}

bool ObjectSpace::clearTape(AudioObjectID id, Changes& changes) {
    Device* found = device(id);
    if (found == nullptr || !found->tape)
        return oldTapes_.erase(id) > 0;
    found->tape = std::make_shared<Tape>(found->settings.channels);
    changes.replan = true;
    return true;
}

bool ObjectSpace::setRecorder(AudioObjectID id, std::shared_ptr<WavRecorder> recorder,
                              Changes& changes) {
    Device* found = device(id);
    if (found == nullptr)
        return false;
    if (found->recorder)
        changes.ended.push_back(std::move(found->recorder));
    found->recorder = std::move(recorder);
    changes.replan = true;
    return true;
}

OSStatus ObjectSpace::setSampleRate(AudioObjectID id, double sampleRate, Changes& changes) {
    DeviceRecord* found = anyDevice(id);
    if (found == nullptr)
        return kAudioHardwareBadObjectError;
    const Device* plain = device(id);
    if (!isUsableRate(sampleRate) || (plain != nullptr && !offersRate(plain->settings, sampleRate)))
        return kAudioHardwareIllegalOperationError;
    if (found->sampleRate == sampleRate)
        return noErr;
    found->sampleRate = sampleRate;
    changes.replan = true;
    changes.notify(id, kAudioDevicePropertyNominalSampleRate);
    if (plain != nullptr) {
        for (const auto& tap : taps_)
            changes.notify(tap->id, kAudioTapPropertyFormat);
    }
    return noErr;
}

OSStatus ObjectSpace::setVolume(AudioObjectID id, AudioObjectPropertyElement element, float scalar,
                                Changes& changes) {
    DeviceRecord* found = anyDevice(id);
    if (found == nullptr)
        return kAudioHardwareBadObjectError;
    VolumeElement* volume = found->volume(element);
    if (volume == nullptr)
        return kAudioHardwareUnknownPropertyError;
    if (std::isnan(scalar))
        return kAudioHardwareIllegalOperationError;
    volume->scalar = std::clamp(scalar, 0.0F, 1.0F);
    if (Device* plain = device(id); plain != nullptr)
        plain->io->volume.set(element, scalar);
    else
        aggregate(id)->volumeControls->set(element, scalar);
    changes.notify(id, kAudioDevicePropertyVolumeScalar, kAudioObjectPropertyScopeOutput, element);
    return noErr;
}

} // namespace orvanta::embedded
