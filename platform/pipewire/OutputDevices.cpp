#include "platform/pipewire/OutputDevices.h"

#include "core/platform/StreamConfiguration.h"
#include "platform/pipewire/DefaultSinkName.h"
#include "platform/pipewire/PrintableText.h"
#include "platform/pipewire/TransportType.h"
#include "platform/pipewire/VolumeLaw.h"

#include <pipewire/keys.h>
#include <spa/param/audio/raw.h>

#include <algorithm>
#include <array>
#include <utility>

namespace orvanta::pipewire {
namespace {

bool isVolume(const AudioObjectPropertyAddress& address) {
    return address.mSelector == kAudioDevicePropertyVolumeScalar &&
           address.mScope == kAudioObjectPropertyScopeOutput;
}

/// More than any name of a device has, and little enough to draw.
constexpr std::size_t kLongestName = 256;
/// A UID stays whole, or two devices might become one; this only stops nonsense.
constexpr std::size_t kLongestUID = 4096;

/// Channels of a device that does not tell: it must not look as if nothing could be played on it.
constexpr std::uint32_t kUntoldChannels = 2;

std::string uidOf(const PropertyMap& properties) {
    return printable(properties.text(PW_KEY_NODE_NAME), kLongestUID);
}

/// For people: some devices have a description, some only a nickname, all should have a name.
std::string readableName(const PropertyMap& properties) {
    for (const char* key : {PW_KEY_NODE_DESCRIPTION, PW_KEY_NODE_NICK})
        if (properties.has(key))
            return printable(properties.text(key), kLongestName);
    return printable(properties.text(PW_KEY_NODE_NAME), kLongestName);
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

void OutputDevices::update(double rate) {
    const bool anyGone = removeGone();
    const bool anyNew = addNew();
    if (anyGone || anyNew)
        listeners_.notify(kAudioObjectSystemObject, {kAudioHardwarePropertyDevices});
    noticeChanges();
    noticeDefault();
    noticeRate(rate);
}

void OutputDevices::forgetAll() {
    for (const auto& [id, device] : devices_)
        if (!device.uid.empty())
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
        device.uid = uidOf(node->properties);
        device.name = readableName(node->properties);
        device.manufacturer = manufacturerOf(*node);
        device.channels = channelsOf(*node);
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
    for (auto& [id, device] : devices_)
        if (const ServerNode* node = mirror_.node(device.node))
            noticeChanges(id, device, *node);
}

void OutputDevices::noticeChanges(AudioObjectID id, Device& device, const ServerNode& node) {
    const auto isNew = [](auto& known, auto now) {
        return std::exchange(known, now) != now;
    };
    if (isNew(device.name, readableName(node.properties))) {
        listeners_.notify(id, {kAudioObjectPropertyName});
        // Whoever shows a list of devices shows their names.
        listeners_.notify(kAudioObjectSystemObject, {kAudioHardwarePropertyDevices});
    }
    if (isNew(device.manufacturer, manufacturerOf(node)))
        listeners_.notify(id, {kAudioObjectPropertyManufacturer});
    if (isNew(device.channels, channelsOf(node)))
        listeners_.notify(
            id, {kAudioDevicePropertyStreamConfiguration, kAudioObjectPropertyScopeOutput});
    if (isNew(device.volumes, volumesOf(node)))
        for (AudioObjectPropertyElement element = 0; element <= 2; ++element)
            listeners_.notify(
                id, {kAudioDevicePropertyVolumeScalar, kAudioObjectPropertyScopeOutput, element});
}

void OutputDevices::noticeDefault() {
    const std::string name =
        defaultSinkName(mirror_.defaults().value(0, "default.audio.sink").value);
    // A tap's node has no device object, so it never counts as the default.
    const AudioObjectID device = deviceWithUID(printable(name, kLongestUID));
    if (device == default_)
        return;
    default_ = device;
    listeners_.notify(kAudioObjectSystemObject, {kAudioHardwarePropertyDefaultOutputDevice});
}

void OutputDevices::noticeRate(double rate) {
    if (std::exchange(rate_, rate) == rate)
        return;
    for (const auto& [id, device] : devices_)
        listeners_.notify(id, {kAudioDevicePropertyNominalSampleRate});
}

std::vector<AudioObjectID> OutputDevices::list() const {
    std::vector<AudioObjectID> ids;
    for (const auto& [id, device] : devices_)
        ids.push_back(id);
    return ids;
}

AudioObjectID OutputDevices::deviceWithUID(const std::string& uid) const {
    if (uid.empty())
        return kAudioObjectUnknown;
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

std::string OutputDevices::manufacturerOf(const ServerNode& node) const {
    const CardRoutes* card = mirror_.cardOf(node);
    return card == nullptr ? "" : printable(card->vendor(), kLongestName);
}

/// What is there to be linked to counts, where it is there.
std::uint32_t OutputDevices::channelsOf(const ServerNode& node) const {
    const auto ports = mirror_.portsOf(node.ref.id);
    const auto inputs = std::count_if(ports.begin(), ports.end(), [](const ServerPort* port) {
        return port->isInput && !port->isMonitor;
    });
    if (inputs > 0)
        return static_cast<std::uint32_t>(inputs);
    const std::uint32_t told = node.properties.number(PW_KEY_AUDIO_CHANNELS).value_or(0);
    return told > 0 && told <= SPA_AUDIO_MAX_CHANNELS ? told : kUntoldChannels;
}

std::vector<float> OutputDevices::volumesOf(const ServerNode& node) const {
    const CardRoutes* card = mirror_.cardOf(node);
    if (const auto profileDevice = node.properties.number("card.profile.device");
        card != nullptr && profileDevice)
        if (auto volumes = card->channelVolumes(*profileDevice); !volumes.empty())
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
    case kAudioObjectPropertyManufacturer:
        return PropertyAnswer::of(manufacturerOf(*node));
    case kAudioDevicePropertyTransportType:
        return PropertyAnswer::of(transportType(node->properties));
    case kAudioDevicePropertyNominalSampleRate:
        return PropertyAnswer::of(rate);
    case kAudioDevicePropertyStreams:
        if (address.mScope == kAudioObjectPropertyScopeInput)
            return PropertyAnswer::of(std::vector<AudioObjectID>{});
        return PropertyAnswer::of(std::vector<AudioObjectID>{device.stream});
    case kAudioDevicePropertyStreamConfiguration:
        if (address.mScope == kAudioObjectPropertyScopeInput)
            return PropertyAnswer::of(streamConfiguration({}));
        if (address.mScope == kAudioObjectPropertyScopeOutput)
            return PropertyAnswer::of(streamConfiguration(std::array{channelsOf(*node)}));
        return PropertyAnswer{};
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
