#pragma once

#include "platform/pipewire/CardRoutes.h"
#include "platform/pipewire/MetadataMirror.h"
#include "platform/pipewire/ServerObjects.h"

#include <spa/utils/hook.h>

#include <functional>
#include <map>
#include <memory>

struct pw_core;
struct pw_registry;
struct spa_dict;

namespace orvanta::pipewire {

/// A live copy of those of the server's objects that matter here: streams, devices, their ports
/// and links, clients and the session's metadata. All of it with the lock held.
class ServerMirror {
public:
    /// `changed` is called after every change, on the control thread.
    explicit ServerMirror(std::function<void()> changed);
    ~ServerMirror();
    ServerMirror(const ServerMirror&) = delete;
    ServerMirror& operator=(const ServerMirror&) = delete;

    void attach(pw_core* core);

    /// Forgets everything. Before the core is disconnected.
    void detach();

    [[nodiscard]] std::vector<const ServerNode*> nodes(NodeKind kind) const;

    /// What programs may play through, as far as the server has described it in full: their
    /// streams and patched nodes, wherever these are linked.
    [[nodiscard]] std::vector<const ServerNode*> playback() const;

    /// Null when there is none.
    [[nodiscard]] const ServerNode* node(const NodeRef& ref) const;
    /// The node that has this id now.
    [[nodiscard]] const ServerNode* nodeWithId(std::uint32_t id) const;
    [[nodiscard]] bool hasNodeNamed(std::string_view name) const;
    /// Only clients that the server has described in full.
    [[nodiscard]] const ServerClient* clientOf(const ServerNode& node) const;

    /// In the order of their numbers.
    [[nodiscard]] std::vector<const ServerPort*> portsOf(std::uint32_t nodeId) const;

    [[nodiscard]] const std::map<std::uint32_t, ServerLink>& links() const { return links_; }

    /// The nodes that the outputs of this one are linked to; one for every link.
    [[nodiscard]] std::vector<const ServerNode*> targetsOf(std::uint32_t nodeId) const;

    /// Whether an output of this node is linked to anything that may be heard.
    [[nodiscard]] bool isHeard(std::uint32_t nodeId) const;

    /// Whether an output of this node is linked to a device.
    [[nodiscard]] bool feedsDevice(std::uint32_t nodeId) const;

    [[nodiscard]] MetadataMirror& defaults() { return defaults_; }

    [[nodiscard]] const MetadataMirror& defaults() const { return defaults_; }

    [[nodiscard]] const MetadataMirror& settings() const { return settings_; }

    /// The card that has this device; null for devices that no card has.
    [[nodiscard]] const CardRoutes* cardOf(const ServerNode& device) const;

    /// Asks the server to destroy an object.
    void destroy(std::uint32_t id);

    /// Linear factors, one for every channel.
    void setChannelVolumes(const ServerNode& device, const std::vector<float>& volumes);

private:
    friend struct MirrorEvents;

    struct BoundNode;
    struct BoundClient;

    void added(std::uint32_t id, const char* type, const spa_dict* properties);
    void removed(std::uint32_t id);
    void addNode(std::uint32_t id, PropertyMap properties);
    void addDefaults(std::uint32_t id);
    void addPort(std::uint32_t id, const PropertyMap& properties);
    void addLink(std::uint32_t id, const PropertyMap& properties);

    std::function<void()> changed_;
    pw_registry* registry_ = nullptr;
    spa_hook registryHook_{};
    std::map<std::uint32_t, std::unique_ptr<BoundNode>> nodes_;
    std::uint64_t nodesSeen_ = 0;
    std::map<std::uint32_t, std::unique_ptr<BoundClient>> clients_;
    std::map<std::uint32_t, std::unique_ptr<CardRoutes>> cards_;
    std::map<std::uint32_t, ServerPort> ports_;
    std::map<std::uint32_t, ServerLink> links_;
    MetadataMirror defaults_;
    /// Other metadata of this name that were there while one was bound.
    std::vector<std::uint32_t> nextDefaults_;
    MetadataMirror settings_;
};

} // namespace orvanta::pipewire
