#include "cli/mix/Values.h"

#include <gtest/gtest.h>

namespace orvanta::cli {
namespace {

std::string complaintAbout(const std::string& word, Range range) {
    try {
        return std::to_string(readNumber(word, range));
    } catch (const CommandError& error) {
        return error.what();
    }
}

TEST(ANumber, LiesWithinItsRange) {
    EXPECT_EQ(readNumber("-1", {-1.0, 1.0}), -1.0);
    EXPECT_EQ(readNumber("0.25", {0.0, 1.0}), 0.25);
    EXPECT_EQ(readNumber("1e-1", {0.0, 1.0}), 0.1);
    EXPECT_EQ(complaintAbout("2.1", {0.0, 2.0}), "\"2.1\" is not a number from 0 to 2.");
}

TEST(ANumber, IsNothingElse) {
    for (const std::string word :
         {"", "loud", "1x", "0x1", "nan", "inf", "1,5", "--1", "+1", "50%"})
        EXPECT_EQ(complaintAbout(word, {-100.0, 100.0}),
                  inQuotes(word) + " is not a number from -100 to 100.");
}

TEST(ALevel, MayBeAPercentage) {
    EXPECT_EQ(readLevel("1.5", {0.0, 2.0}), 1.5F);
    EXPECT_EQ(readLevel("150%", {0.0, 2.0}), 1.5F);
    EXPECT_EQ(readLevel("0%", {0.0, 2.0}), 0.0F);
    for (const std::string word : {"201%", "-1%", "%", "1%%", "nan%", "2.1"})
        EXPECT_THROW(std::ignore = readLevel(word, {0.0, 2.0}), CommandError) << word;
}

TEST(ASwitch, IsOnOrOff) {
    EXPECT_TRUE(readSwitch("on"));
    EXPECT_FALSE(readSwitch("OFF"));
    EXPECT_THROW(std::ignore = readSwitch("yes"), CommandError);
}

TEST(AName, IsReadInLettersOfEitherCaseAndMissedWithWhatThereIs) {
    static constexpr std::string_view kAll[] = {"Rock", "Late Night"};
    const auto read = [](const std::string& word) {
        return readNamed(
            word, std::span<const std::string_view>(kAll),
            [](std::string_view each) { return each; }, "preset");
    };
    EXPECT_EQ(read("late night"), "Late Night");
    try {
        read("Loud");
        FAIL();
    } catch (const CommandError& error) {
        EXPECT_STREQ(error.what(), "There is no preset \"Loud\"; there are Rock and Late Night.");
    }
}

} // namespace
} // namespace orvanta::cli
