#include "platform/pipewire/RateLimit.h"

#include <gtest/gtest.h>

namespace orvanta::pipewire {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

const RateLimit::Time start{seconds(1000)};

TEST(RateLimit, AllowsSoOftenAndNoMore) {
    RateLimit limit(3, seconds(10));
    EXPECT_TRUE(limit.allow(start));
    EXPECT_TRUE(limit.allow(start));
    EXPECT_TRUE(limit.allow(start + seconds(1)));
    EXPECT_FALSE(limit.allow(start + seconds(2)));
    EXPECT_FALSE(limit.allow(start + milliseconds(9999)));
}

TEST(RateLimit, AllowsAgainWhenTheFirstTimesAreLongEnoughAgo) {
    RateLimit limit(3, seconds(10));
    limit.allow(start);
    limit.allow(start + seconds(4));
    limit.allow(start + seconds(5));
    EXPECT_TRUE(limit.allow(start + seconds(10)));
    EXPECT_FALSE(limit.allow(start + seconds(11)));
    EXPECT_TRUE(limit.allow(start + seconds(14)));
}

TEST(RateLimit, DoesNotCountWhatItRefused) {
    RateLimit limit(1, seconds(10));
    limit.allow(start);
    for (int second = 1; second < 10; ++second)
        EXPECT_FALSE(limit.allow(start + seconds(second)));
    EXPECT_TRUE(limit.allow(start + seconds(10)));
}

} // namespace
} // namespace orvanta::pipewire
