#include "core/services/crash/ISO8601.h"
#include "core/services/crash/MailURL.h"
#include "core/services/crash/MarkerLine.h"
#include "core/services/crash/UTF8.h"
#include "tests/support/ScriptedWallClock.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvanta::crash {
namespace {

using namespace std::chrono_literals;

std::string markerLine(int signal) {
    char line[kLongestMarkerLine];
    return {line, putMarkerLine(line, signal)};
}

TEST(MarkerLine, HasTheNumberInDecimal) {
    EXPECT_EQ(markerLine(11), "CRASH:SIG:11\n");
    EXPECT_EQ(markerLine(6), "CRASH:SIG:6\n");
    EXPECT_EQ(markerLine(100), "CRASH:SIG:100\n");
}

TEST(MarkerLine, KnowsZeroAndNumbersBelowIt) {
    EXPECT_EQ(markerLine(0), "CRASH:SIG:0\n");
    EXPECT_EQ(markerLine(-5), "CRASH:SIG:-5\n");
}

TEST(MarkerLine, HoldsTheLargestNumbers) {
    EXPECT_EQ(markerLine(std::numeric_limits<int>::max()), "CRASH:SIG:2147483647\n");
    EXPECT_EQ(markerLine(std::numeric_limits<int>::min()), "CRASH:SIG:-2147483648\n");
    EXPECT_EQ(markerLine(std::numeric_limits<int>::min()).size(), kLongestMarkerLine);
}

TEST(ISO8601, IsUniversalTimeInWholeSeconds) {
    const WallTime time = test::ScriptedWallClock().time;
    EXPECT_EQ(iso8601(time), "2026-11-21T12:34:56Z");
    EXPECT_EQ(iso8601(time + 999ms), "2026-11-21T12:34:56Z");
    EXPECT_EQ(iso8601(time + 1s), "2026-11-21T12:34:57Z");
    EXPECT_EQ(iso8601(WallTime{}), "1970-01-01T00:00:00Z");
    EXPECT_EQ(iso8601(WallTime{} - 1ms), "1969-12-31T23:59:59Z");
    EXPECT_EQ(iso8601(WallTime{1709164799s}), "2024-02-28T23:59:59Z");
    EXPECT_EQ(iso8601(WallTime{1709164800s}), "2024-02-29T00:00:00Z");
}

TEST(MailURL, KeepsLettersDigitsAndFourMarks) {
    EXPECT_EQ(mailURL("help@example.org", "AZaz09-._~", "b"),
              "mailto:help@example.org?subject=AZaz09-._~&body=b");
}

TEST(MailURL, EncodesEveryOtherByte) {
    EXPECT_EQ(mailURL("a@b.c", "x — v1.0", "a b\n&=?#%+/:;,'\"\\<é🔴\x7f"),
              "mailto:a@b.c?subject=x%20%E2%80%94%20v1.0&body="
              "a%20b%0A%26%3D%3F%23%25%2B%2F%3A%3B%2C%27%22%5C%3C%C3%A9%F0%9F%94%B4%7F");
}

TEST(MailURL, HoldsEmptyTexts) {
    EXPECT_EQ(mailURL("a@b.c", "", ""), "mailto:a@b.c?subject=&body=");
}

TEST(UTF8, IsToldFromOtherBytes) {
    EXPECT_TRUE(isUTF8(""));
    EXPECT_TRUE(isUTF8("plain"));
    EXPECT_TRUE(isUTF8("═ é 🔴"));
    EXPECT_TRUE(isUTF8(std::string_view("a\0b", 3)));
    EXPECT_FALSE(isUTF8("\xff"));
    EXPECT_FALSE(isUTF8("cut off \xe2\x95"));
    EXPECT_FALSE(isUTF8("Latin \xe9 letter"));
    EXPECT_FALSE(isUTF8("half of a pair \xed\xa0\x80"));
}

TEST(UTF8, IsMadeOfAnyBytes) {
    EXPECT_EQ(madeUTF8("═ é 🔴"), "═ é 🔴");
    EXPECT_EQ(madeUTF8("a\xff"
                       "b"),
              "a\uFFFDb");
    EXPECT_TRUE(isUTF8(madeUTF8("\xe2\x95 \xed\xa0\x80 \xc0\x80")));
}

} // namespace
} // namespace orvanta::crash
