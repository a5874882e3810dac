#include "core/services/crash/CrashReport.h"

#include "core/services/crash/UTF8.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::crash {
namespace {

using ::testing::HasSubstr;

const HostInfo kHost{"/home/anna", "2.0.1", "417", "Debian GNU/Linux 12 (bookworm)"};

TEST(CrashReport, HasItsExactForm) {
    EXPECT_EQ(crashReport(kHost, "2026-11-21T12:34:56Z",
                          {"std::runtime_error", "no device", {"libc.so.6 abort + 18", "a b + 0"}}),
              "═══════════════════════════════════════════════════\n"
              "Orvanta Crash Report\n"
              "═══════════════════════════════════════════════════\n"
              "Timestamp: 2026-11-21T12:34:56Z\n"
              "App Version: 2.0.1 (417)\n"
              "macOS: Debian GNU/Linux 12 (bookworm)\n"
              "Type: EXCEPTION\n"
              "Reason: std::runtime_error: no device\n"
              "\n"
              "Call Stack:\n"
              "  0: libc.so.6 abort + 18\n"
              "  1: a b + 0\n"
              "\n"
              "═══════════════════════════════════════════════════");
}

TEST(CrashReport, HasRulesOfFiftyOneCharacters) {
    const std::string report = crashReport(kHost, "", {});
    const std::string rule = report.substr(0, report.find('\n'));
    EXPECT_EQ(rule.size(), 51U * 3);
    EXPECT_EQ(rule.substr(0, 3), "\u2550");
}

TEST(CrashReport, AsksForEachVersionThatIsMissing) {
    HostInfo host = kHost;
    host.bundleVersion.reset();
    EXPECT_THAT(crashReport(host, "", {}), HasSubstr("\nApp Version: 2.0.1 (?)\n"));
    host.shortVersion.reset();
    EXPECT_THAT(crashReport(host, "", {}), HasSubstr("\nApp Version: ? (?)\n"));
    host.bundleVersion = "417";
    EXPECT_THAT(crashReport(host, "", {}), HasSubstr("\nApp Version: ? (417)\n"));
}

TEST(CrashReport, SaysUnknownForAMissingReasonAndNothingForAnEmptyOne) {
    EXPECT_THAT(crashReport(kHost, "", {"int", std::nullopt}),
                HasSubstr("\nReason: int: unknown\n"));
    EXPECT_THAT(crashReport(kHost, "", {"int", ""}), HasSubstr("\nReason: int: \n"));
}

TEST(CrashReport, NeedsNoCalls) {
    EXPECT_THAT(crashReport(kHost, "", {"int"}), HasSubstr("\n\nCall Stack:\n\n═"));
}

TEST(CrashReport, IsUTF8WhateverTheReasonIs) {
    const std::string report = crashReport(kHost, "", {"E", "caf\xe9 \xff"});
    EXPECT_TRUE(isUTF8(report));
    EXPECT_THAT(report, HasSubstr("\nReason: E: caf\uFFFD \uFFFD\n"));
}

} // namespace
} // namespace orvanta::crash
