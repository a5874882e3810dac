#include "cli/mix/Meters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace orvanta::cli {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::vector<MeterReading> kReadings{
    {.pid = 101, .name = "Music", .rms = 0.1F, .peak = 0.5F},
    {.pid = 102, .name = "Speech", .rms = 0.0F, .peak = 0.0F}};

std::size_t count(const std::string& text, char letter) {
    return static_cast<std::size_t>(std::ranges::count(text, letter));
}

TEST(MeterLines, TellRmsAndPeakInDecibels) {
    EXPECT_EQ(meterLines(kReadings), "pid=101 name=\"Music\" rms=-20.0 peak=-6.0\n"
                                     "pid=102 name=\"Speech\" rms=-inf peak=-inf\n");
    EXPECT_EQ(meterLines({}), "");
}

TEST(AMeterPicture, HasABarForEachThatIsAsLongAsItIsLoud) {
    MeterPicture picture;
    const std::string text = picture.drawn(kReadings, 80, 24);
    EXPECT_THAT(text, HasSubstr("Music "));
    EXPECT_THAT(text, HasSubstr("  -6.0 dB"));
    EXPECT_THAT(text, HasSubstr("  -inf dB"));
    EXPECT_EQ(count(text, '\n'), 2U);
    EXPECT_EQ(count(text, '#'), 39U) << "54 of 60 dB, of 44 columns";
    EXPECT_EQ(count(text, '#') + count(text, '.') - 1, 2U * 44U);
}

TEST(AMeterPicture, IsDrawnOverTheOneBeforeAndLeavesTheCursor) {
    MeterPicture picture;
    EXPECT_THAT(picture.drawn(kReadings, 80, 24), Not(HasSubstr("A")));
    const std::string again = picture.drawn(kReadings, 80, 24);
    EXPECT_THAT(again, StartsWith("\0337\r\033[2A"));
    EXPECT_TRUE(again.ends_with("\0338"));
    const std::string fewer = picture.drawn({kReadings[0]}, 80, 24);
    EXPECT_THAT(fewer, StartsWith("\r\033[2A\033[J"));
}

TEST(AMeterPicture, FitsTheTerminal) {
    MeterPicture picture;
    const std::vector<MeterReading> many(50, kReadings[0]);
    EXPECT_EQ(count(picture.drawn(many, 80, 10), '\n'), 8U);
    EXPECT_EQ(count(MeterPicture().drawn(many, 1, 1), '\n'), 1U);
}

TEST(AMeterPicture, CutsLongNamesByWhatIsSeenOfThem) {
    MeterPicture picture;
    std::string name;
    for (int letter = 0; letter < 30; ++letter)
        name += "\xC3\xBC";
    const std::string text =
        picture.drawn({{.pid = 1, .name = name, .rms = 1.0F, .peak = 1.0F}}, 80, 24);
    EXPECT_EQ(count(text, '\xC3'), 24U);
    EXPECT_THAT(text, HasSubstr("   0.0 dB"));
}

} // namespace
} // namespace orvanta::cli
