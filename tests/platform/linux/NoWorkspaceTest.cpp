#include "platform/linux/NoWorkspace.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace orvanta {
namespace {

TEST(NoWorkspace, KnowsNoApplicationAndNoIcon) {
    const NoWorkspace workspace;
    EXPECT_FALSE(workspace.runningApplication(getpid()));
    EXPECT_TRUE(workspace.runningApplications().empty());
    EXPECT_FALSE(workspace.urlForApplication("com.example.player"));
    EXPECT_EQ(workspace.iconForFile("/usr/share/applications/player.desktop"), nullptr);
}

} // namespace
} // namespace orvanta
