#pragma once

#include "platform/pipewire/ObjectIds.h"
#include "platform/pipewire/PropertyAnswer.h"
#include "platform/pipewire/PropertyListeners.h"
#include "platform/pipewire/ServerMirror.h"

#include <map>
#include <optional>

namespace orvanta::pipewire {

/// The server's sinks as devices. All of it with the lock held.
class OutputDevices {
public:
    OutputDevices(ServerMirror& mirror, ObjectIds& ids, PropertyListeners& listeners);

    /// Takes in what the server has now. `rate` is the graph's, in Hz.
    void update(double rate);

    /// The server is gone. Devices that a next one has under the same UID keep their ids.
    void forgetAll();

    [[nodiscard]] bool isEmpty() const { return devices_.empty(); }

    /// In the order in which they came.
    [[nodiscard]] std::vector<AudioObjectID> list() const;

    /// 0 when the session has none, or names something that is no device.
    [[nodiscard]] AudioObjectID defaultDevice() const { return default_; }

    /// 0 when there is none. A device without a UID cannot be found, an empty one is nobody's.
    [[nodiscard]] AudioObjectID deviceWithUID(const std::string& uid) const;

    /// Null when there is none.
    [[nodiscard]] const ServerNode* nodeWithUID(const std::string& uid) const;

    /// Nothing when there is no such device. `rate` is the graph's, in Hz.
    [[nodiscard]] std::optional<PropertyAnswer>
    read(AudioObjectID object, const AudioObjectPropertyAddress& address, double rate) const;

    /// Nothing when there is no such device.
    [[nodiscard]] std::optional<bool> isSettable(AudioObjectID object,
                                                 const AudioObjectPropertyAddress& address) const;

    /// From 0 to 1, as `kAudioDevicePropertyVolumeScalar`.
    OSStatus setVolume(AudioObjectID object, const AudioObjectPropertyAddress& address,
                       float scalar);

private:
    struct Device {
        NodeRef node;
        std::string uid;
        std::string name;
        std::string manufacturer;
        std::uint32_t channels = 0;
        std::vector<float> volumes;
        AudioObjectID stream = kAudioObjectUnknown;
    };

    [[nodiscard]] std::string manufacturerOf(const ServerNode& node) const;
    [[nodiscard]] std::uint32_t channelsOf(const ServerNode& node) const;
    [[nodiscard]] std::vector<float> volumesOf(const ServerNode& node) const;
    void noticeChanges(AudioObjectID id, Device& device, const ServerNode& node);
    [[nodiscard]] const ServerNode* nodeOf(AudioObjectID object) const;
    bool addNew();
    bool removeGone();
    void noticeChanges();
    void noticeDefault();
    void noticeRate(double rate);

    ServerMirror& mirror_;
    ObjectIds& ids_;
    PropertyListeners& listeners_;
    std::map<AudioObjectID, Device> devices_;
    /// Ids of devices of a server that is gone, by UID.
    std::map<std::string, AudioObjectID> former_;
    AudioObjectID default_ = kAudioObjectUnknown;
    double rate_ = 0;
};

} // namespace orvanta::pipewire
