#include "app/update/VersionOrder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvanta {
namespace {

TEST(VersionOrder, PutsEveryVersionInItsPlace) {
    const std::vector<std::string> ascending{"0.9",
                                             "1.0a1",
                                             "1.0a2",
                                             "1.0b1",
                                             "1.0b10",
                                             "1.0rc1",
                                             "1.0",
                                             "1.0.1",
                                             "1.1b1",
                                             "1.1",
                                             "1.9",
                                             "1.10",
                                             "1.10.0.1",
                                             "2",
                                             "10.0",
                                             "2026.1",
                                             "2026.11",
                                             "99999999999999999999",
                                             "100000000000000000000"};
    for (std::size_t a = 0; a < ascending.size(); ++a) {
        for (std::size_t b = 0; b < ascending.size(); ++b) {
            EXPECT_TRUE(compareVersions(ascending[a], ascending[b]) == (a <=> b))
                << ascending[a] << " and " << ascending[b];
        }
    }
}

TEST(VersionOrder, TakesDifferentSpellingsForTheSame) {
    EXPECT_TRUE(std::is_eq(compareVersions("1.0", "1.0.0")));
    EXPECT_TRUE(std::is_eq(compareVersions("1", "1.0.0.0")));
    EXPECT_TRUE(std::is_eq(compareVersions("1.02", "1.2")));
    EXPECT_TRUE(std::is_eq(compareVersions("1.0-B1", "1.0b1")));
    EXPECT_TRUE(std::is_eq(compareVersions("1_0 (3)", "1.0.3")));
    EXPECT_TRUE(std::is_eq(compareVersions("v1.2", "1.2")));
    EXPECT_TRUE(std::is_eq(compareVersions("V2", "2.0")));
    EXPECT_TRUE(std::is_eq(compareVersions("", "")));
    EXPECT_TRUE(std::is_eq(compareVersions("", "0.0")));
    EXPECT_TRUE(std::is_eq(compareVersions("...", "")));
}

TEST(VersionOrder, PutsNothingBeforeAnyRelease) {
    EXPECT_TRUE(std::is_lt(compareVersions("", "0.1")));
    EXPECT_TRUE(std::is_gt(compareVersions("0.1", "")));
    EXPECT_TRUE(std::is_gt(compareVersions("", "b1"))) << "but behind a stage before it";
}

} // namespace
} // namespace orvanta
