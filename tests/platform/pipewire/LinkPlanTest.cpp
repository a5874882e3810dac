#include "platform/pipewire/DeviceLinks.h"

#include <gtest/gtest.h>

namespace orvanta::pipewire {
namespace {

/// Ports of two nodes, 1 being the tap and 2 the device; kept where the plan can point at them.
class LinkPlanTest : public testing::Test {
protected:
    LinkPlanTest() {
        add(tap_, {.id = 10, .number = 0, .isInput = true, .channel = "FL"});
        add(tap_, {.id = 11, .number = 1, .isInput = true, .channel = "FR"});
        add(tap_, {.id = 12, .number = 0, .channel = "FL"});
        add(tap_, {.id = 13, .number = 1, .channel = "FR"});
    }

    void device(std::uint32_t id, const std::string& channel, bool isMonitor = false) {
        add(device_, {.id = id, .isInput = !isMonitor, .isMonitor = isMonitor, .channel = channel});
    }

    [[nodiscard]] LinkPlan plan() const { return planLinks(1, views(tap_), 2, views(device_)); }

    using Pairs = std::vector<LinkPlan::Pair>;

    std::vector<ServerPort> tap_;
    std::vector<ServerPort> device_;

private:
    static void add(std::vector<ServerPort>& ports, ServerPort port) {
        ports.push_back(std::move(port));
    }

    static std::vector<const ServerPort*> views(const std::vector<ServerPort>& ports) {
        std::vector<const ServerPort*> found;
        for (const ServerPort& port : ports)
            found.push_back(&port);
        return found;
    }
};

TEST_F(LinkPlanTest, LinksLeftToLeftAndRightToRight) {
    device(21, "FR");
    device(20, "FL");
    EXPECT_EQ(plan().pairs, (Pairs{{12, 20}, {13, 21}}));
    EXPECT_FALSE(plan().isMono);
}

TEST_F(LinkPlanTest, UsesTheFrontOfASurroundDevice) {
    for (const auto& [id, channel] :
         {std::pair{20U, "FC"}, {21U, "LFE"}, {22U, "FL"}, {23U, "FR"}, {24U, "SL"}, {25U, "SR"}})
        device(id, channel);
    EXPECT_EQ(plan().pairs, (Pairs{{12, 22}, {13, 23}}));
}

TEST_F(LinkPlanTest, FoldsIntoTheOnlyChannelOfADevice) {
    device(20, "MONO");
    EXPECT_EQ(plan().pairs, (Pairs{{12, 20}}));
    EXPECT_TRUE(plan().isMono);
}

TEST_F(LinkPlanTest, UsesTheFirstTwoChannelsWhereTheyHaveNoSides) {
    device(20, "AUX0");
    device(21, "AUX1");
    device(22, "AUX2");
    EXPECT_EQ(plan().pairs, (Pairs{{12, 20}, {13, 21}}));
}

TEST_F(LinkPlanTest, NeverPlaysIntoAMonitor) {
    device(20, "FL");
    device(21, "FR");
    device(30, "FL", true);
    device(31, "FR", true);
    EXPECT_EQ(plan().pairs, (Pairs{{12, 20}, {13, 21}}));
}

TEST_F(LinkPlanTest, IsEmptyWhileOneSideHasNoPorts) {
    EXPECT_EQ(plan(), LinkPlan());
    device(20, "FL");
    device(21, "FR");
    tap_.clear();
    EXPECT_EQ(plan(), LinkPlan());
}

} // namespace
} // namespace orvanta::pipewire
