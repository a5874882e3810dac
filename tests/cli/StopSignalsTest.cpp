#include "cli/StopSignals.h"

#include <gtest/gtest.h>

#include <csignal>

namespace orvanta::cli {
namespace {

using Clock = std::chrono::steady_clock;
using Duration = std::chrono::duration<double>;

TEST(StopSignals, AreHeldBackAndEndAWaitAtOnce) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        StopSignals signals;
        ASSERT_EQ(raise(signal), 0);
        EXPECT_TRUE(signals.waitUntil(Clock::now() + Duration(60.0)));
    }
}

TEST(StopSignals, WithoutOneAWaitEndsAtItsTime) {
    StopSignals signals;
    const auto until = Clock::now() + Duration(0.02);
    EXPECT_FALSE(signals.waitUntil(until));
    EXPECT_GE(Clock::now(), until);
    EXPECT_FALSE(signals.waitUntil(Clock::now() - Duration(1.0)));
}

} // namespace
} // namespace orvanta::cli
