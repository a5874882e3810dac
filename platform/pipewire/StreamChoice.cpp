#include "platform/pipewire/StreamChoice.h"

#include <pipewire/keys.h>

namespace orvanta::pipewire {
namespace {

bool isMovable(const ServerNode& node) {
    const PropertyMap& properties = node.properties;
    return node.kind == NodeKind::outputStream && properties.isTrue(PW_KEY_NODE_AUTOCONNECT) &&
           !properties.isTrue(PW_KEY_NODE_DONT_RECONNECT) && !properties.isTrue("node.dont-move") &&
           !properties.isTrue(PW_KEY_NODE_EXCLUSIVE);
}

} // namespace

StreamChoice chooseStreams(const std::vector<const ServerNode*>& playback) {
    StreamChoice choice;
    for (const ServerNode* node : playback)
        (isMovable(*node) ? choice.toClaim : choice.toLeave).push_back(node->ref);
    return choice;
}

} // namespace orvanta::pipewire
