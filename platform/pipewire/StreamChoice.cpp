#include "platform/pipewire/StreamChoice.h"

#include <pipewire/keys.h>

namespace orvanta::pipewire {
namespace {

/// The others that are streams are linked by their program or by hand, or not at all.
bool isLinkedBySession(const ServerNode& node) {
    return node.properties.isTrue(PW_KEY_NODE_AUTOCONNECT);
}

bool isMovable(const ServerNode& node) {
    const PropertyMap& properties = node.properties;
    return node.kind == NodeKind::outputStream && isLinkedBySession(node) &&
           !properties.isTrue(PW_KEY_NODE_DONT_RECONNECT) && !properties.isTrue("node.dont-move") &&
           !properties.isTrue(PW_KEY_NODE_EXCLUSIVE);
}

} // namespace

StreamChoice chooseStreams(const std::vector<const ServerNode*>& playback,
                           const std::function<bool(const ServerNode&)>& isHeard) {
    StreamChoice choice;
    for (const ServerNode* node : playback)
        if (isMovable(*node))
            choice.toClaim.push_back(node->ref);
        else if (node->kind != NodeKind::outputStream || isLinkedBySession(*node) || isHeard(*node))
            choice.toLeave.push_back(node->ref);
    return choice;
}

} // namespace orvanta::pipewire
