#include "platform/pipewire/OutputDevices.h"

#include "platform/pipewire/DefaultSinkName.h"
#include "platform/pipewire/TransportType.h"
#include "platform/pipewire/VolumeLaw.h"

#include <pipewire/keys.h>

#include <algorithm>

namespace orvanta::pipewire {
namespace {

bool isVolume(const AudioObjectPropertyAddress& address) {
    return address.mSelector == kAudioDevicePropertyVolumeScalar &&
           address.mScope == kAudioObjectPropertyScopeOutput;
}

/// For people: some devices have a description, some only a nickname, all should have a name.
const std::string& readableName(const PropertyMap& properties) {
    for (const char* key : {PW_KEY_NODE_DESCRIPTION, PW_KEY_NODE_NICK})
        if (properties.has(key))
            return properties.text(key);
    return properties.text(PW_KEY_NODE_NAME);
}

/// The volume of the device (element 0: its loudest channel) or of one channel (from 1).
std::optional<float> scalarOf(const std::vector<float>& volumes,
                              AudioObjectPropertyElement element) {
    if (volumes.empty() || element > volumes.size())
        return std::nullopt;
    return scalarFromLinear(element == kAudioObjectPropertyElementMain
                                ? *std::max_element(volumes.begin(), volumes.end())
                                : volumes[element - 1]);
}

} // namespace

OutputDevices::OutputDevices(ServerMirror& mirror, ObjectIds& ids, PropertyListeners& listeners)
    : mirror_(mirror), ids_(ids), listeners_(listeners) {}

void OutputDevices::update() {
    const bool anyGone = removeGone();
    const bool anyNew = addNew();
    if (anyGone || anyNew)
        listeners_.notify(kAudioObjectSystemObject, {kAudioHardwarePropertyDevices});
    noticeChanges();
    noticeDefault();
}

void OutputDevices::forgetAll() {
    for (const auto& [id, device] : devices_)
        former_[device.uid] = id;
    devices_.clear();
    default_ = kAudioObjectUnknown;
}

bool OutputDevices::removeGone() {
    return std::erase_if(devices_, [this](const auto& entry) {
               return mirror_.node(entry.second.node) == nullptr;
           }) > 0;
}

bool OutputDevices::addNew() {
    bool added = false;
    for (const ServerNode* node : mirror_.nodes(NodeKind::device)) {
        const auto isIt = [&](const auto& entry) {
            return entry.second.node == node->ref;
        };
        if (std::any_of(devices_.begin(), devices_.end(), isIt))
            continue;
        Device device;
        device.node = node->ref;
        device.uid = node->properties.text(PW_KEY_NODE_NAME);
        device.name = readableName(node->properties);
        device.stream = ids_.next();
        const auto former = former_.find(device.uid);
        const AudioObjectID id = former != former_.end() ? former->second : ids_.next();
        if (former != former_.end())
            former_.erase(former);
        devices_[id] = std::move(device);
        added = true;
    }
    return added;
}

void OutputDevices::noticeChanges() {
    for (auto& [id, device] : devices_) {
        const ServerNode* node = mirror_.node(device.node);
        if (node == nullptr)
            continue;
        if (const std::string& name = readableName(node->properties); name != device.name) {
            device.name = name;
            listeners_.notify(id, {kAudioObjectPropertyName});
        }
        if (auto volumes = volumesOf(*node); volumes != device.volumes) {
            device.volumes = std::move(volumes);
            for (AudioObjectPropertyElement element = 0; element <= 2; ++element)
                listeners_.notify(id, {kAudioDevicePropertyVolumeScalar,
                                       kAudioObjectPropertyScopeOutput, element});
        }
    }
}

void OutputDevices::noticeDefault() {
    const std::string name =
        defaultSinkName(mirror_.defaults().value(0, "default.audio.sink").value);
    // A tap's node has no device object, so it never counts as the default.
    const AudioObjectID device = name.empty() ? kAudioObjectUnknown : deviceWithUID(name);
    if (device == default_)
        return;
    default_ = device;
    listeners_.notify(kAudioObjectSystemObject, {kAudioHardwarePropertyDefaultOutputDevice});
}

std::vector<AudioObjectID> OutputDevices::list() const {
    std::vector<AudioObjectID> ids;
    for (const auto& [id, device] : devices_)
        ids.push_back(id);
    return ids;
}

AudioObjectID OutputDevices::deviceWithUID(const std::string& uid) const {
    for (const auto& [id, device] : devices_)
        if (device.uid == uid)
            return id;
    return kAudioObjectUnknown;
}

const ServerNode* OutputDevices::nodeWithUID(const std::string& uid) const {
    return nodeOf(deviceWithUID(uid));
}

const ServerNode* OutputDevices::nodeOf(AudioObjectID object) const {
    const auto found = devices_.find(object);
    return found == devices_.end() ? nullptr : mirror_.node(found->second.node);
}

std::vector<float> OutputDevices::volumesOf(const ServerNode& node) const {
    if (const CardRoutes* card = mirror_.cardOf(node))
        if (auto volumes =
                card->channelVolumes(node.properties.number("card.profile.device").value_or(0));
            !volumes.empty())
            return volumes;
    return node.channelVolumes;
}

std::optional<PropertyAnswer> OutputDevices::read(AudioObjectID object,
                                                  const AudioObjectPropertyAddress& address,
                                                  double rate) const {
    const auto found = devices_.find(object);
    const ServerNode* node = nodeOf(object);
    if (node == nullptr)
        return std::nullopt;
    const Device& device = found->second;
    switch (address.mSelector) {
    case kAudioDevicePropertyDeviceUID:
        return PropertyAnswer::of(device.uid);
    case kAudioObjectPropertyName:
        return PropertyAnswer::of(readableName(node->properties));
    case kAudioDevicePropertyTransportType:
        return PropertyAnswer::of(transportType(node->properties));
    case kAudioDevicePropertyNominalSampleRate:
        return PropertyAnswer::of(rate);
    case kAudioDevicePropertyStreams:
        if (address.mScope == kAudioObjectPropertyScopeInput)
            return PropertyAnswer::of(std::vector<AudioObjectID>{});
        return PropertyAnswer::of(std::vector<AudioObjectID>{device.stream});
    case kAudioDevicePropertyVolumeScalar:
        if (isVolume(address))
            if (const auto scalar = scalarOf(volumesOf(*node), address.mElement))
                return PropertyAnswer::of(*scalar);
        return PropertyAnswer{};
    default:
        return PropertyAnswer{};
    }
}

std::optional<bool> OutputDevices::isSettable(AudioObjectID object,
                                              const AudioObjectPropertyAddress& address) const {
    const ServerNode* node = nodeOf(object);
    if (node == nullptr)
        return std::nullopt;
    return (isVolume(address) && scalarOf(volumesOf(*node), address.mElement)) ||
           address.mSelector == kAudioDevicePropertyNominalSampleRate;
}

OSStatus OutputDevices::setVolume(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                  float scalar) {
    const ServerNode* node = nodeOf(object);
    if (node == nullptr)
        return kAudioHardwareBadObjectError;
    std::vector<float> volumes = volumesOf(*node);
    if (!isVolume(address) || !scalarOf(volumes, address.mElement))
        return kAudioHardwareUnknownPropertyError;
    if (!std::isfinite(scalar))
        return kAudioHardwareIllegalOperationError;
    if (address.mElement == kAudioObjectPropertyElementMain)
        volumes = withMainScalar(std::move(volumes), scalar);
    else
        volumes[address.mElement - 1] = linearFromScalar(scalar);
    mirror_.setChannelVolumes(*node, volumes);
    return noErr;
}

} // namespace orvanta::pipewire
