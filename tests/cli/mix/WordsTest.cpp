#include "cli/mix/Words.h"

#include "cli/mix/CommandError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::cli {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Words, StandBetweenBlanks) {
    EXPECT_THAT(wordsOf("volume 101\t0.5"), ElementsAre("volume", "101", "0.5"));
    EXPECT_THAT(wordsOf("  list  "), ElementsAre("list"));
    EXPECT_THAT(wordsOf(""), IsEmpty());
    EXPECT_THAT(wordsOf(" \t "), IsEmpty());
}

TEST(Words, KeepBlanksWithinQuotes) {
    EXPECT_THAT(wordsOf(R"(tap "Demo Music")"), ElementsAre("tap", "Demo Music"));
    EXPECT_THAT(wordsOf(R"(a"b c"d "")"), ElementsAre("ab cd", ""));
    EXPECT_THAT(wordsOf("folder \"/home/M\xC3\xBCller\""),
                ElementsAre("folder", "/home/M\xC3\xBCller"));
}

TEST(Words, HaveQuotesAndBackslashesBehindABackslashWithinQuotes) {
    EXPECT_THAT(wordsOf(R"("a \"b\" \\ \n")"), ElementsAre(R"(a "b" \ \n)"));
    EXPECT_THAT(wordsOf(R"(C:\dir\)"), ElementsAre(R"(C:\dir\)"));
}

TEST(Words, AreNotReadFromWhatIsNoText) {
    for (const std::string line : {"\"open", "a \"b\\\"", "\x01", "a\x7F", "\xFF", "\xC3"})
        EXPECT_THROW(std::ignore = wordsOf(line), CommandError) << line;
    EXPECT_THROW(std::ignore = wordsOf(std::string_view("a\0b", 3)), CommandError);
}

TEST(Quotes, MakeOneWordOfAnyText) {
    for (const std::string text : {"", "Demo Music", R"(say "yes" \ no)", "M\xC3\xBCller", "\\"})
        EXPECT_THAT(wordsOf(inQuotes(text)), ElementsAre(text));
}

TEST(Quotes, KeepALineALine) {
    EXPECT_EQ(inQuotes("a\nb\x1B[2J\tc"), "\"a?b?[2J?c\"");
}

TEST(AnEnumeration, HasOneAnd) {
    EXPECT_EQ(enumerated({}), "");
    EXPECT_EQ(enumerated(std::vector<std::string>{"a"}), "a");
    EXPECT_EQ(enumerated(std::vector<std::string>{"a", "b"}), "a and b");
    EXPECT_EQ(enumerated(std::vector<std::string>{"a", "b", "c"}), "a, b and c");
}

} // namespace
} // namespace orvanta::cli
