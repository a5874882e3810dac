#include "app/console/ResourceUsage.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvanta::test {
namespace {

TEST(ResourceUsage, TellsWhetherAProgramPlays) {
    EXPECT_EQ(resourceUsage::activity(true), "Playing");
    EXPECT_EQ(resourceUsage::activity(false), "Idle");
}

TEST(ResourceUsage, TellsTheProcessorInTenths) {
    EXPECT_EQ(resourceUsage::cpuReadOut(23.44), "23.4%");
    EXPECT_EQ(resourceUsage::cpuReadOut(0.0), "0.0%");
    EXPECT_EQ(resourceUsage::cpuReadOut(640.0), "640.0%");
}

TEST(ResourceUsage, ColoursTheProcessorByWhatIsLeftOfIt) {
    EXPECT_EQ(resourceUsage::cpuColor(0.0), "green");
    EXPECT_EQ(resourceUsage::cpuColor(20.0), "green");
    EXPECT_EQ(resourceUsage::cpuColor(20.1), "warmOrange");
    EXPECT_EQ(resourceUsage::cpuColor(50.0), "warmOrange");
    EXPECT_EQ(resourceUsage::cpuColor(50.1), "red");
}

TEST(ResourceUsage, FillsTheBarAtAWholeCore) {
    EXPECT_EQ(resourceUsage::cpuShare(25.0), 0.25);
    EXPECT_EQ(resourceUsage::cpuShare(100.0), 1.0);
    EXPECT_EQ(resourceUsage::cpuShare(320.0), 1.0);
    EXPECT_EQ(resourceUsage::cpuShare(-1.0), 0.0);
    EXPECT_EQ(resourceUsage::cpuShare(std::numeric_limits<double>::quiet_NaN()), 0.0);
}

TEST(ResourceUsage, TellsMemoryInGigabytesOnlyAboveOne) {
    EXPECT_EQ(resourceUsage::memoryReadOut(412.4), "412 MB");
    EXPECT_EQ(resourceUsage::memoryReadOut(1024.0), "1024 MB");
    EXPECT_EQ(resourceUsage::memoryReadOut(1025.0), "1.0 GB");
    EXPECT_EQ(resourceUsage::memoryReadOut(1536.0), "1.5 GB");
}

} // namespace
} // namespace orvanta::test
