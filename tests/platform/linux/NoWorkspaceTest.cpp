#include "platform/linux/NoWorkspace.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace orvanta {
namespace {

TEST(NoWorkspace, KnowsNoApplicationAndNoIcon) {
    const NoWorkspace workspace;
    EXPECT_FALSE(workspace.runningApplication(getpid()));
    EXPECT_EQ(workspace.iconForBundleIdentifier("com.example.player"), nullptr);
}

} // namespace
} // namespace orvanta
