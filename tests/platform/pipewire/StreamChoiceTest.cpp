#include "platform/pipewire/StreamChoice.h"

#include "tests/platform/pipewire/support/Properties.h"

#include <gmock/gmock.h>

#include <set>

namespace orvanta::pipewire {
namespace {

using test::properties;
using testing::ElementsAre;
using testing::IsEmpty;

class StreamChoices : public testing::Test {
protected:
    void add(std::uint32_t id, PropertyMap properties, NodeKind kind = NodeKind::outputStream) {
        ServerNode node;
        node.ref = {id, id};
        node.kind = kind;
        node.properties = std::move(properties);
        nodes_.push_back(std::move(node));
    }

    [[nodiscard]] StreamChoice choose() const {
        std::vector<const ServerNode*> playback;
        for (const ServerNode& node : nodes_)
            playback.push_back(&node);
        return chooseStreams(
            playback, [this](const ServerNode& node) { return !silent_.contains(node.ref.id); });
    }

    static NodeRef ref(std::uint32_t id) { return {id, id}; }

    std::vector<ServerNode> nodes_;
    std::set<std::uint32_t> silent_;
};

TEST_F(StreamChoices, AreWhatTheSessionManagerLinks) {
    add(1, properties({{"node.autoconnect", "true"}}));
    add(2, properties({{"node.autoconnect", "1"}, {"node.passthrough", "true"}}));
    add(3, properties({{"node.autoconnect", "true"}, {"node.dont-reconnect", "false"}}));
    EXPECT_THAT(choose().toClaim, ElementsAre(ref(1), ref(2), ref(3)));
    EXPECT_THAT(choose().toLeave, IsEmpty());
}

TEST_F(StreamChoices, LeaveWhatItNeverMovesOrMightNotLetBack) {
    add(1, properties({}));
    add(2, properties({{"node.autoconnect", "false"}}));
    add(3, properties({{"node.autoconnect", "true"}, {"node.dont-reconnect", "true"}}));
    add(4, properties({{"node.autoconnect", "true"}, {"node.dont-move", "true"}}));
    add(5, properties({{"node.autoconnect", "true"}, {"node.exclusive", "true"}}));
    add(6, properties({{"node.autoconnect", "true"}}), NodeKind::patched);
    EXPECT_THAT(choose().toClaim, IsEmpty());
    EXPECT_THAT(choose().toLeave, ElementsAre(ref(1), ref(2), ref(3), ref(4), ref(5), ref(6)));
}

/// The session manager links the others as soon as they play.
TEST_F(StreamChoices, PassOverWhatIsOnlyLinkedByHandWhileItIsNot) {
    add(1, properties({{"node.autoconnect", "false"}}));
    add(2, properties({{"node.autoconnect", "true"}, {"node.dont-reconnect", "true"}}));
    add(3, properties({}), NodeKind::patched);
    add(4, properties({{"node.autoconnect", "true"}}));
    silent_ = {1, 2, 3, 4};
    EXPECT_THAT(choose().toClaim, ElementsAre(ref(4)));
    EXPECT_THAT(choose().toLeave, ElementsAre(ref(2), ref(3)));
}

} // namespace
} // namespace orvanta::pipewire
