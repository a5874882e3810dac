#include "platform/pipewire/PrintableText.h"

#include <gtest/gtest.h>

namespace orvanta::pipewire {
namespace {

constexpr std::size_t plenty = 1000;

TEST(PrintableText, IsWhatIsTextAlready) {
    for (const char* text : {"", "Firefox", "Zvuková karta", "スピーカー", "🔊 loud"})
        EXPECT_EQ(printable(text, plenty), text);
}

TEST(PrintableText, HasAReplacementForWhatIsNone) {
    EXPECT_EQ(printable("a\xFFz", plenty), "a\uFFFDz");
    EXPECT_EQ(printable("\xC3", plenty), "\uFFFD") << "cut off";
    EXPECT_EQ(printable("\x80z", plenty), "\uFFFDz") << "no beginning";
    EXPECT_EQ(printable("\xC3z", plenty), "\uFFFDz") << "no end";
    EXPECT_EQ(printable("\xC0\xAF", plenty), "\uFFFD\uFFFD") << "longer than need be";
    EXPECT_EQ(printable("\xED\xA0\x80", plenty), "\uFFFD\uFFFD\uFFFD") << "half of a pair";
    EXPECT_EQ(printable("\xF4\x90\x80\x80", plenty), "\uFFFD\uFFFD\uFFFD\uFFFD") << "too far";
    EXPECT_EQ(printable("a\nb\x7F"
                        "c\xC2\x85",
                        plenty),
              "a\uFFFDb\uFFFDc\uFFFD\uFFFD")
        << "control characters";
}

TEST(PrintableText, IsCutBetweenCharacters) {
    EXPECT_EQ(printable(std::string(100000, 'x'), 256), std::string(256, 'x'));
    EXPECT_EQ(printable("ééé", 5), "éé");
    EXPECT_EQ(printable("\xFF\xFF", 5), "\uFFFD");
    EXPECT_EQ(printable("x", 0), "");
}

} // namespace
} // namespace orvanta::pipewire
