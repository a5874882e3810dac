#include "platform/pipewire/ServerMirror.h"

#include "platform/pipewire/ChannelVolumes.h"
#include "platform/pipewire/TapName.h"

#include <pipewire/client.h>
#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>
#include <spa/param/param.h>
#include <spa/pod/builder.h>

#include <algorithm>
#include <array>

namespace orvanta::pipewire {
namespace {

NodeKind kindOf(const PropertyMap& properties) {
    // What the PulseAudio bridge makes while there is no device; nobody hears what plays there.
    constexpr std::string_view kPlaceholder = "auto_null";
    const std::string& mediaClass = properties.text(PW_KEY_MEDIA_CLASS);
    const std::string& name = properties.text(PW_KEY_NODE_NAME);
    if (mediaClass == "Stream/Output/Audio")
        return NodeKind::outputStream;
    if (mediaClass == "Stream/Input/Audio")
        return NodeKind::inputStream;
    if (mediaClass.empty() && properties.has(PW_KEY_CLIENT_ID))
        return NodeKind::patched;
    if (mediaClass == "Audio/Sink" && !isTapName(name) && name != kPlaceholder)
        return NodeKind::device;
    return NodeKind::other;
}

} // namespace

struct ServerMirror::BoundNode : ServerNode {
    ServerMirror* mirror = nullptr;
    pw_node* proxy = nullptr;
    spa_hook hook{};

    ~BoundNode() {
        if (proxy == nullptr)
            return;
        spa_hook_remove(&hook);
        pw_proxy_destroy(reinterpret_cast<pw_proxy*>(proxy));
    }
};

struct ServerMirror::BoundClient : ServerClient {
    ServerMirror* mirror = nullptr;
    pw_client* proxy = nullptr;
    spa_hook hook{};

    ~BoundClient() {
        if (proxy == nullptr)
            return;
        spa_hook_remove(&hook);
        pw_proxy_destroy(reinterpret_cast<pw_proxy*>(proxy));
    }
};

struct MirrorEvents {
    static void global(void* data, std::uint32_t id, std::uint32_t, const char* type, std::uint32_t,
                       const spa_dict* properties) {
        static_cast<ServerMirror*>(data)->added(id, type, properties);
    }

    static void globalRemove(void* data, std::uint32_t id) {
        static_cast<ServerMirror*>(data)->removed(id);
    }

    static void nodeInfo(void* data, const pw_node_info* info) {
        auto& node = *static_cast<ServerMirror::BoundNode*>(data);
        node.properties.merge(info->props);
        node.isDescribed = true;
        node.state = info->state;
        node.mirror->changed_();
    }

    static void nodeParam(void* data, int, std::uint32_t id, std::uint32_t, std::uint32_t,
                          const spa_pod* param) {
        auto& node = *static_cast<ServerMirror::BoundNode*>(data);
        if (id != SPA_PARAM_Props)
            return;
        // A device may tell its properties in several parts; only one of them has the volumes.
        if (auto volumes = channelVolumesIn(param); !volumes.empty()) {
            node.channelVolumes = std::move(volumes);
            node.mirror->changed_();
        }
    }

    static void clientInfo(void* data, const pw_client_info* info) {
        auto& client = *static_cast<ServerMirror::BoundClient*>(data);
        client.properties.merge(info->props);
        client.isDescribed = true;
        client.mirror->changed_();
    }
};

ServerMirror::ServerMirror(std::function<void()> changed)
    : changed_(std::move(changed)), defaults_(changed_), settings_(changed_) {}

ServerMirror::~ServerMirror() {
    detach();
}

void ServerMirror::attach(pw_core* core) {
    static constexpr pw_registry_events events{PW_VERSION_REGISTRY_EVENTS, MirrorEvents::global,
                                               MirrorEvents::globalRemove};
    registry_ = pw_core_get_registry(core, PW_VERSION_REGISTRY, 0);
    if (registry_ != nullptr)
        pw_registry_add_listener(registry_, &registryHook_, &events, this);
}

void ServerMirror::detach() {
    nodes_.clear();
    clients_.clear();
    cards_.clear();
    ports_.clear();
    links_.clear();
    defaults_.unbind();
    nextDefaults_.clear();
    settings_.unbind();
    if (registry_ == nullptr)
        return;
    spa_hook_remove(&registryHook_);
    pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
    registry_ = nullptr;
}

void ServerMirror::added(std::uint32_t id, const char* type, const spa_dict* dict) {
    static constexpr pw_client_events clientEvents{PW_VERSION_CLIENT_EVENTS,
                                                   MirrorEvents::clientInfo, nullptr};
    if (type == nullptr)
        return;
    PropertyMap properties;
    properties.merge(dict);
    const std::string_view kind = type;
    if (kind == PW_TYPE_INTERFACE_Node) {
        addNode(id, std::move(properties));
    } else if (kind == PW_TYPE_INTERFACE_Port) {
        addPort(id, properties);
    } else if (kind == PW_TYPE_INTERFACE_Link) {
        addLink(id, properties);
    } else if (kind == PW_TYPE_INTERFACE_Client) {
        // At once and not when it first plays: its stream must find its process id known.
        auto client = std::make_unique<BoundClient>();
        client->id = id;
        client->properties = std::move(properties);
        client->mirror = this;
        client->proxy =
            static_cast<pw_client*>(pw_registry_bind(registry_, id, type, PW_VERSION_CLIENT, 0));
        if (client->proxy != nullptr)
            pw_client_add_listener(client->proxy, &client->hook, &clientEvents, client.get());
        clients_[id] = std::move(client);
    } else if (kind == PW_TYPE_INTERFACE_Device) {
        if (properties.text(PW_KEY_MEDIA_CLASS) == "Audio/Device")
            cards_[id] = std::make_unique<CardRoutes>(registry_, id, changed_);
    } else if (kind == PW_TYPE_INTERFACE_Metadata) {
        const std::string& name = properties.text(PW_KEY_METADATA_NAME);
        if (name == "default")
            addDefaults(id);
        else if (name == "settings" && !settings_.isBound())
            settings_.bind(registry_, id);
    } else {
        return;
    }
    changed_();
}

void ServerMirror::addNode(std::uint32_t id, PropertyMap properties) {
    static constexpr pw_node_events events{PW_VERSION_NODE_EVENTS, MirrorEvents::nodeInfo,
                                           MirrorEvents::nodeParam};
    auto node = std::make_unique<BoundNode>();
    node->ref = {id, ++nodesSeen_};
    node->kind = kindOf(properties);
    node->properties = std::move(properties);
    node->mirror = this;
    if (node->kind != NodeKind::other) {
        node->proxy = static_cast<pw_node*>(
            pw_registry_bind(registry_, id, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, 0));
        if (node->proxy != nullptr)
            pw_node_add_listener(node->proxy, &node->hook, &events, node.get());
    }
    if (node->kind == NodeKind::device && node->proxy != nullptr) {
        std::array<std::uint32_t, 1> params{SPA_PARAM_Props};
        pw_node_subscribe_params(node->proxy, params.data(), params.size());
    }
    nodes_[id] = std::move(node);
}

/// A session manager may bring its own before that of the one it replaces is gone.
void ServerMirror::addDefaults(std::uint32_t id) {
    if (defaults_.isBound())
        nextDefaults_.push_back(id);
    else
        defaults_.bind(registry_, id);
}

void ServerMirror::addPort(std::uint32_t id, const PropertyMap& properties) {
    ServerPort port;
    port.id = id;
    port.nodeId = properties.number(PW_KEY_NODE_ID).value_or(SPA_ID_INVALID);
    port.number = properties.number(PW_KEY_PORT_ID).value_or(0);
    port.isInput = properties.text(PW_KEY_PORT_DIRECTION) == "in";
    port.isMonitor = properties.isTrue(PW_KEY_PORT_MONITOR);
    port.channel = properties.text(PW_KEY_AUDIO_CHANNEL);
    ports_[id] = std::move(port);
}

void ServerMirror::addLink(std::uint32_t id, const PropertyMap& properties) {
    links_[id] = {properties.number(PW_KEY_LINK_OUTPUT_NODE).value_or(SPA_ID_INVALID),
                  properties.number(PW_KEY_LINK_INPUT_NODE).value_or(SPA_ID_INVALID)};
}

void ServerMirror::removed(std::uint32_t id) {
    std::erase(nextDefaults_, id);
    if (defaults_.isBound() && defaults_.id() == id) {
        defaults_.unbind();
        if (!nextDefaults_.empty()) {
            defaults_.bind(registry_, nextDefaults_.front());
            nextDefaults_.erase(nextDefaults_.begin());
        }
    }
    if (settings_.isBound() && settings_.id() == id)
        settings_.unbind();
    defaults_.forget(id);
    nodes_.erase(id);
    clients_.erase(id);
    cards_.erase(id);
    ports_.erase(id);
    links_.erase(id);
    changed_();
}

std::vector<const ServerNode*> ServerMirror::nodes(NodeKind kind) const {
    std::vector<const ServerNode*> found;
    for (const auto& [id, node] : nodes_)
        if (node->kind == kind)
            found.push_back(node.get());
    return found;
}

std::vector<const ServerNode*> ServerMirror::playback() const {
    std::vector<const ServerNode*> found;
    for (const auto& [id, node] : nodes_)
        if (node->isDescribed &&
            (node->kind == NodeKind::outputStream || node->kind == NodeKind::patched))
            found.push_back(node.get());
    return found;
}

std::vector<const ServerNode*> ServerMirror::targetsOf(std::uint32_t nodeId) const {
    std::vector<const ServerNode*> targets;
    for (const auto& [id, link] : links_)
        if (link.outputNode == nodeId)
            if (const ServerNode* target = nodeWithId(link.inputNode); target != nullptr)
                targets.push_back(target);
    return targets;
}

bool ServerMirror::isHeard(std::uint32_t nodeId) const {
    const auto targets = targetsOf(nodeId);
    return std::any_of(targets.begin(), targets.end(),
                       [](const ServerNode* target) { return mayBeHeard(*target); });
}

bool ServerMirror::feedsDevice(std::uint32_t nodeId) const {
    const auto targets = targetsOf(nodeId);
    return std::any_of(targets.begin(), targets.end(),
                       [](const ServerNode* target) { return target->kind == NodeKind::device; });
}

const ServerNode* ServerMirror::nodeWithId(std::uint32_t id) const {
    const auto found = nodes_.find(id);
    return found == nodes_.end() ? nullptr : found->second.get();
}

const ServerNode* ServerMirror::node(const NodeRef& ref) const {
    const ServerNode* node = nodeWithId(ref.id);
    return node == nullptr || node->ref != ref ? nullptr : node;
}

bool ServerMirror::hasNodeNamed(std::string_view name) const {
    return std::any_of(nodes_.begin(), nodes_.end(), [&](const auto& entry) {
        return entry.second->properties.text(PW_KEY_NODE_NAME) == name;
    });
}

const ServerClient* ServerMirror::clientOf(const ServerNode& node) const {
    const auto id = node.properties.number(PW_KEY_CLIENT_ID);
    const auto found = id ? clients_.find(*id) : clients_.end();
    if (found == clients_.end() || !found->second->isDescribed)
        return nullptr;
    return found->second.get();
}

std::vector<const ServerPort*> ServerMirror::portsOf(std::uint32_t nodeId) const {
    std::vector<const ServerPort*> found;
    for (const auto& [id, port] : ports_)
        if (port.nodeId == nodeId)
            found.push_back(&port);
    std::stable_sort(found.begin(), found.end(),
                     [](const ServerPort* left, const ServerPort* right) {
                         return left->number < right->number;
                     });
    return found;
}

const CardRoutes* ServerMirror::cardOf(const ServerNode& device) const {
    const auto id = device.properties.number(PW_KEY_DEVICE_ID);
    const auto found = id ? cards_.find(*id) : cards_.end();
    return found == cards_.end() ? nullptr : found->second.get();
}

void ServerMirror::destroy(std::uint32_t id) {
    if (registry_ != nullptr)
        pw_registry_destroy(registry_, id);
}

void ServerMirror::setChannelVolumes(const ServerNode& device, const std::vector<float>& volumes) {
    const auto found = nodes_.find(device.ref.id);
    if (found == nodes_.end() || found->second->proxy == nullptr)
        return;
    found->second->channelVolumes = volumes;
    const auto profileDevice = device.properties.number("card.profile.device");
    const auto card = cards_.find(device.properties.number(PW_KEY_DEVICE_ID).value_or(0));
    if (profileDevice && card != cards_.end() &&
        card->second->setChannelVolumes(*profileDevice, volumes))
        return;
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    if (const spa_pod* param = buildChannelVolumes(builder, SPA_PARAM_Props, volumes))
        pw_node_set_param(found->second->proxy, SPA_PARAM_Props, 0, param);
}

} // namespace orvanta::pipewire
