#include "platform/pipewire/StreamChoice.h"

#include <pipewire/keys.h>

namespace orvanta::pipewire {
namespace {

bool isMovable(const ServerNode& node) {
    return node.kind == NodeKind::outputStream && node.properties.isTrue(PW_KEY_NODE_AUTOCONNECT) &&
           !node.properties.isTrue(PW_KEY_NODE_DONT_RECONNECT) &&
           !node.properties.isTrue("node.dont-move");
}

bool isExclusive(const ServerNode& node) {
    return node.properties.isTrue(PW_KEY_NODE_EXCLUSIVE);
}

} // namespace

StreamChoice chooseStreams(const std::vector<const ServerNode*>& playback,
                           const std::function<bool(const NodeRef&)>& isClaimed) {
    StreamChoice choice;
    bool isTaken = false;
    for (const ServerNode* node : playback) {
        if (!isMovable(*node) || !isClaimed(node->ref))
            continue;
        choice.toClaim.push_back(node->ref);
        isTaken = isTaken || isExclusive(*node);
    }
    for (const ServerNode* node : playback) {
        if (isMovable(*node) && isClaimed(node->ref))
            continue;
        const bool isInTheWay = isTaken || (isExclusive(*node) && !choice.toClaim.empty());
        if (!isMovable(*node) || isInTheWay) {
            choice.toLeave.push_back(node->ref);
            continue;
        }
        choice.toClaim.push_back(node->ref);
        isTaken = isExclusive(*node);
    }
    return choice;
}

} // namespace orvanta::pipewire
