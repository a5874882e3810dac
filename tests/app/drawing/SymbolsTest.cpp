#include "app/drawing/Symbols.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace orvanta {
namespace {

TEST(Symbols, AreAllGlyphsOfTheIconFont) {
    // The package has a picture of each glyph, by the glyph's name.
    const std::filesystem::path pictures = ORVANTA_ICON_PICTURES;
    ASSERT_TRUE(std::filesystem::exists(pictures));
    for (const Symbol& symbol : symbols()) {
        EXPECT_TRUE(std::filesystem::exists(pictures / (std::string(symbol.glyph) + ".svg")))
            << symbol.name;
    }
}

TEST(Symbols, AreFoundByTheirNames) {
    EXPECT_FALSE(symbols().empty());
    for (const Symbol& symbol : symbols())
        EXPECT_EQ(glyphOf(symbol.name), symbol.glyph);
    EXPECT_EQ(glyphOf("speaker.wave.3.fill"), "speaker_3_fill");
    EXPECT_EQ(glyphOf("bolt.circle"), "bolt_circle");
}

TEST(Symbols, AreNothingForAnotherName) {
    EXPECT_EQ(glyphOf(""), "");
    EXPECT_EQ(glyphOf("speaker"), "");
    EXPECT_EQ(glyphOf("zzz"), "");
}

} // namespace
} // namespace orvanta
