#include "core/recording/RecordingFileName.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

namespace orvanta::test {
namespace {

/// 2026-11-21 12:34:56 UTC.
const WallTime noonAndMore{std::chrono::seconds{1795264496}};

/// The time zone of this process, put back at the end.
class TimeZone {
public:
    explicit TimeZone(const char* name) {
        if (const char* const before = std::getenv("TZ"))
            before_ = before;
        set(name);
    }

    ~TimeZone() { set(before_.empty() ? nullptr : before_.c_str()); }

    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    static void set(const char* name) {
        if (name == nullptr)
            unsetenv("TZ");
        else
            setenv("TZ", name, 1);
        tzset();
    }

    std::string before_;
};

TEST(RecordingFileName, KeepsLettersDigitsHyphensUnderscoresAndSpaces) {
    EXPECT_EQ(cleanedForFileName("Music Player_2-b"), "Music Player_2-b");
}

TEST(RecordingFileName, MakesAHyphenOfEveryOtherCharacter) {
    EXPECT_EQ(cleanedForFileName("My/App: b2.3"), "My-App- b2-3");
    EXPECT_EQ(cleanedForFileName("a??b"), "a--b");
    EXPECT_EQ(cleanedForFileName("a\tb\nc"), "a-b-c");
}

TEST(RecordingFileName, TakesLettersMarksAndNumbersOfEveryScript) {
    EXPECT_EQ(cleanedForFileName("Müsik プレーヤー плеер"), "Müsik プレーヤー плеер");
    EXPECT_EQ(cleanedForFileName("e\u0301 \u0968 \u2163 \u00BD"), "e\u0301 \u0968 \u2163 \u00BD")
        << "a combining accent, a Devanagari digit, a Roman numeral, a fraction";
    EXPECT_EQ(cleanedForFileName("𝒜bc"), "𝒜bc") << "beyond the first plane";
}

TEST(RecordingFileName, MakesOneHyphenOfOneCharacterHoweverManyBytesItHas) {
    EXPECT_EQ(cleanedForFileName("a\u20ACb"), "a-b");
    EXPECT_EQ(cleanedForFileName("a😀b"), "a-b");
    EXPECT_EQ(cleanedForFileName("a\u00A0b"), "a-b") << "only the plain space is a space";
}

TEST(RecordingFileName, RemovesDoubleDotsFirst) {
    EXPECT_EQ(cleanedForFileName("a..b"), "ab");
    EXPECT_EQ(cleanedForFileName("a...b"), "a-b") << "two go, one is left";
    EXPECT_EQ(cleanedForFileName("a....b"), "ab");
    EXPECT_EQ(cleanedForFileName("x.. ..y"), "x y");
    EXPECT_EQ(cleanedForFileName("../../etc/passwd"), "etc-passwd");
}

TEST(RecordingFileName, TrimsHyphensAndSpacesFromBothEnds) {
    EXPECT_EQ(cleanedForFileName(" - Player - "), "Player");
    EXPECT_EQ(cleanedForFileName("(Player)"), "Player");
    EXPECT_EQ(cleanedForFileName("_Player_"), "_Player_");
}

TEST(RecordingFileName, MayBeLeftWithoutAName) {
    EXPECT_EQ(cleanedForFileName(""), "");
    EXPECT_EQ(cleanedForFileName("..."), "");
    EXPECT_EQ(cleanedForFileName("- /"), "");
    const TimeZone utc("UTC");
    EXPECT_EQ(recordingFileName("...", noonAndMore, RecordingFormat::wav),
              "_2026-11-21_12-34-56.wav");
}

TEST(RecordingFileName, TakesMalformedBytesForOtherCharacters) {
    EXPECT_EQ(cleanedForFileName("a\xFF\xFE"
                                 "b"),
              "a--b");
    EXPECT_EQ(cleanedForFileName("a\xE2\x82"), "a");
    EXPECT_EQ(cleanedForFileName(std::string_view("a\0b", 3)), "a-b");
}

TEST(RecordingFileName, CarriesTheLocalTimeAndTheExtension) {
    {
        const TimeZone utc("UTC");
        EXPECT_EQ(recordingFileName("Music", noonAndMore, RecordingFormat::wav),
                  "Music_2026-11-21_12-34-56.wav");
    }
    const TimeZone tokyo("JST-9");
    EXPECT_EQ(recordingFileName("Music", noonAndMore, RecordingFormat::m4a),
              "Music_2026-11-21_21-34-56.m4a");
}

TEST(RecordingFileName, DropsPartsOfASecond) {
    const TimeZone utc("UTC");
    EXPECT_EQ(
        recordingFileName("A", noonAndMore + std::chrono::milliseconds(999), RecordingFormat::wav),
        "A_2026-11-21_12-34-56.wav");
}

} // namespace
} // namespace orvanta::test
