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

    [[nodiscard]] StreamChoice choose(const std::set<std::uint32_t>& claimed = {}) const {
        std::vector<const ServerNode*> playback;
        for (const ServerNode& node : nodes_)
            playback.push_back(&node);
        return chooseStreams(playback,
                             [&](const NodeRef& stream) { return claimed.contains(stream.id); });
    }

    static NodeRef ref(std::uint32_t id) { return {id, id}; }

    std::vector<ServerNode> nodes_;
};

const PropertyMap usual = properties({{"node.autoconnect", "true"}});
const PropertyMap exclusive =
    properties({{"node.autoconnect", "true"}, {"node.exclusive", "true"}});

TEST_F(StreamChoices, AreWhatTheSessionManagerLinks) {
    add(1, usual);
    add(2, properties({{"node.autoconnect", "1"}, {"node.passthrough", "true"}}));
    EXPECT_THAT(choose().toClaim, ElementsAre(ref(1), ref(2)));
    EXPECT_THAT(choose().toLeave, IsEmpty());
}

TEST_F(StreamChoices, LeaveWhatItNeverMoves) {
    add(1, properties({}));
    add(2, properties({{"node.autoconnect", "false"}}));
    add(3, properties({{"node.autoconnect", "true"}, {"node.dont-reconnect", "true"}}));
    add(4, properties({{"node.autoconnect", "true"}, {"node.dont-move", "true"}}));
    add(5, usual, NodeKind::patched);
    EXPECT_THAT(choose().toClaim, IsEmpty());
    EXPECT_THAT(choose().toLeave, ElementsAre(ref(1), ref(2), ref(3), ref(4), ref(5)));
}

TEST_F(StreamChoices, HaveAnExclusiveStreamAlone) {
    add(1, exclusive);
    EXPECT_THAT(choose().toClaim, ElementsAre(ref(1)));
    add(2, usual);
    EXPECT_THAT(choose().toClaim, ElementsAre(ref(1)));
    EXPECT_THAT(choose().toLeave, ElementsAre(ref(2)));
}

TEST_F(StreamChoices, HaveNoExclusiveStreamBesideOthers) {
    add(1, usual);
    add(2, exclusive);
    EXPECT_THAT(choose().toClaim, ElementsAre(ref(1)));
    EXPECT_THAT(choose().toLeave, ElementsAre(ref(2)));
}

TEST_F(StreamChoices, KeepWhatIsClaimedBeforeWhatIsNew) {
    add(1, exclusive);
    add(2, usual);
    EXPECT_THAT(choose({2}).toClaim, ElementsAre(ref(2)));
    EXPECT_THAT(choose({2}).toLeave, ElementsAre(ref(1)));
    EXPECT_THAT(choose({1}).toClaim, ElementsAre(ref(1)));
    EXPECT_THAT(choose({1}).toLeave, ElementsAre(ref(2)));
}

} // namespace
} // namespace orvanta::pipewire
