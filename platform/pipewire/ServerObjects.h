#pragma once

#include "platform/pipewire/PropertyMap.h"

#include <pipewire/keys.h>
#include <pipewire/node.h>

#include <cstdint>
#include <vector>

/// What this program knows of the server's objects. Ids are the server's, valid on one connection.
namespace orvanta::pipewire {

enum class NodeKind {
    outputStream, ///< a program's playback
    inputStream,  ///< a program's recording
    patched,      ///< of a program that is linked by itself or by hand only, as JACK clients are
    device,       ///< a sink, also one that another program made
    other,        ///< among them the nodes of taps, which pose as sinks but are none
};

/// Names one node for good. The server gives the id of a node that is gone to the next one, often
/// so soon that both changes are seen together.
struct NodeRef {
    std::uint32_t id = 0;
    /// Counts the nodes that were ever seen.
    std::uint64_t incarnation = 0;

    friend auto operator<=>(const NodeRef&, const NodeRef&) = default;
};

struct ServerNode {
    NodeRef ref;
    NodeKind kind = NodeKind::other;
    PropertyMap properties;
    /// False while only the few properties are known that come with the announcement.
    bool isDescribed = false;
    pw_node_state state = PW_NODE_STATE_SUSPENDED;
    /// Linear factors, one for every channel; empty until the server has told.
    std::vector<float> channelVolumes;
};

/// Whether what is linked into this node may be heard by somebody. Recordings and microphones that
/// a program made take sound in without playing it; of everything else, devices that are no sinks
/// and other programs' filters among it, nobody here can tell.
[[nodiscard]] inline bool mayBeHeard(const ServerNode& node) {
    return node.kind != NodeKind::inputStream &&
           !node.properties.text(PW_KEY_MEDIA_CLASS).starts_with("Audio/Source");
}

struct ServerClient {
    std::uint32_t id = 0;
    PropertyMap properties;
    /// False while only the few properties are known that come with the announcement.
    bool isDescribed = false;
};

struct ServerPort {
    std::uint32_t id = 0;
    std::uint32_t nodeId = 0;
    /// The node's own number for it.
    std::uint32_t number = 0;
    bool isInput = false;
    bool isMonitor = false;
    std::string channel;
};

struct ServerLink {
    std::uint32_t outputNode = 0;
    std::uint32_t inputNode = 0;
};

} // namespace orvanta::pipewire
