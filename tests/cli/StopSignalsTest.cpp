#include "cli/StopSignals.h"

#include <gtest/gtest.h>

#include <csignal>
#include <poll.h>

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

TEST(StopSignals, CanBeWaitedForWithoutAnEnd) {
    StopSignals signals;
    ASSERT_EQ(raise(SIGTERM), 0);
    signals.wait();
    EXPECT_FALSE(signals.waitUntil(Clock::now()));
}

TEST(StopSignals, CanBePolledForUntilTheyAreTaken) {
    StopSignals signals;
    const auto isReadable = [&] {
        pollfd watched{signals.descriptor(), POLLIN, 0};
        return poll(&watched, 1, 0) == 1;
    };
    EXPECT_FALSE(isReadable());
    ASSERT_EQ(raise(SIGHUP), 0);
    EXPECT_TRUE(isReadable());
    EXPECT_TRUE(signals.waitUntil(Clock::now()));
    EXPECT_FALSE(isReadable());
}

} // namespace
} // namespace orvanta::cli
