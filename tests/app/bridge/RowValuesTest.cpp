#include "app/bridge/RowValues.h"

#include "app/bridge/SymbolTable.h"
#include "app/drawing/Symbols.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::ElementsAre;

std::vector<std::string> texts(const QVariantList& entries, const char* key) {
    std::vector<std::string> all;
    for (const QVariant& entry : entries)
        all.push_back(entry.toMap().value(key).toString().toStdString());
    return all;
}

TEST(RowValues, OfferTheEqualizersPresetsUnderThreeHeadings) {
    const QVariantList presets = RowValues::equalizerPresets();
    EXPECT_THAT(texts(presets, "heading"), ElementsAre("Genre", "", "", "", "", "", "", "Context",
                                                       "", "", "Voice & Utility", ""));
    EXPECT_THAT(texts(presets, "name"),
                ElementsAre("Rock", "Pop", "Jazz", "Classical", "Electronic", "Hip-Hop", "R&B",
                            "Late Night", "Small Speakers", "Headphones", "Podcast", "Bass Boost"));
    for (const std::string& emoji : texts(presets, "emoji"))
        EXPECT_FALSE(emoji.empty());
}

TEST(RowValues, OfferThreeKnobsForTheirBands) {
    const QVariantList knobs = RowValues::simpleBands();
    EXPECT_THAT(texts(knobs, "text"), ElementsAre("Bass", "Mid", "Treble"));
    EXPECT_THAT(texts(knobs, "band"), ElementsAre("3", "5", "7"));
}

TEST(RowValues, PlaceTenFadersAtTheirFrequencies) {
    const QVariantList bands = RowValues::bands();
    EXPECT_THAT(texts(bands, "label"),
                ElementsAre("31", "62", "125", "250", "500", "1K", "2K", "4K", "8K", "16K"));
    double last = 0.0;
    for (const QVariant& band : bands) {
        const double share = band.toMap().value("share").toDouble();
        EXPECT_GT(share, last);
        EXPECT_LT(share, 1.0);
        last = share;
    }
    // 1 kHz: the way from 20 Hz is log 50 of log 1000.
    EXPECT_NEAR(bands.at(5).toMap().value("share").toDouble(), 0.5663, 1e-4);
}

TEST(RowValues, OfferTheCompressorsPresetsAndQuantities) {
    EXPECT_EQ(RowValues::compressorPresets().front(), "Off");
    const QVariantList fields = RowValues::compressorFields();
    EXPECT_THAT(texts(fields, "label"), ElementsAre("Thresh", "Ratio", "Makeup"));
    EXPECT_THAT(texts(fields, "accessibleLabel"),
                ElementsAre("Thresh compressor", "Ratio compressor", "Makeup compressor"));
    EXPECT_THAT(texts(fields, "minimum"), ElementsAre("-60", "1", "0"));
    EXPECT_THAT(texts(fields, "maximum"), ElementsAre("0", "20", "24"));
    EXPECT_THAT(texts(fields, "step"), ElementsAre("1", "0.5", "0.5"));
}

TEST(RowValues, SayWhatAGainIs) {
    EXPECT_EQ(RowValues::gainReadOut(4), "+4");
    EXPECT_EQ(RowValues::gainReadOut(-12), "-12");
    EXPECT_EQ(RowValues::gainReadOut(0), "+0");
    EXPECT_EQ(RowValues::gainValue(4), "+4 decibels");
    EXPECT_FALSE(RowValues::isGainLit(0.5));
    EXPECT_TRUE(RowValues::isGainLit(1));
    EXPECT_TRUE(RowValues::isGainLit(-1));
}

TEST(RowValues, SayWhereTheBalanceIs) {
    struct Case {
        double balance;
        QString value;
        QString readOut;
        bool isLeftLit;
        bool isRightLit;
    };

    for (const auto& [balance, value, readOut, isLeftLit, isRightLit] :
         {Case{0.0, "Center", "", false, false}, Case{0.05, "Center", "", false, false},
          Case{-0.05, "Center", "", false, false},
          Case{-0.1, "10 percent left", "10% Left", false, false},
          Case{-0.25, "25 percent left", "25% Left", true, false},
          Case{0.1, "10 percent right", "10% Right", false, true},
          Case{1.0, "100 percent right", "100% Right", false, true}}) {
        const QVariantMap words = RowValues::balanceWords(balance);
        EXPECT_EQ(words.value("value"), value);
        EXPECT_EQ(words.value("readOut"), readOut);
        EXPECT_EQ(words.value("isLeftLit"), isLeftLit) << balance;
        EXPECT_EQ(words.value("isRightLit"), isRightLit) << balance;
    }
}

TEST(RowValues, SayWhatAThresholdIs) {
    EXPECT_EQ(RowValues::thresholdReadOut(-48), "-48 dB");
    EXPECT_EQ(RowValues::thresholdValue(-48), "-48 decibels");
}

TEST(RowValues, SayWhatACompressorsQuantityIs) {
    EXPECT_EQ(RowValues::compressorReadOut(0, -14), "-14 dB");
    EXPECT_EQ(RowValues::compressorValue(0, -14), "-14 dB");
    EXPECT_EQ(RowValues::compressorReadOut(1, 4), "4:1");
    EXPECT_EQ(RowValues::compressorValue(1, 4), "4 to 1");
    EXPECT_EQ(RowValues::compressorReadOut(2, 6), "+6 dB");
    EXPECT_EQ(RowValues::compressorValue(2, 6), "+6 dB");
}

TEST(RowValues, SayHowToUnfold) {
    EXPECT_EQ(RowValues::expansionHint(false), "Double tap to expand");
    EXPECT_EQ(RowValues::expansionHint(true), "Double tap to collapse");
}

TEST(SymbolTable, HasTheGlyphsOfTheSymbols) {
    const SymbolTable table;
    EXPECT_EQ(table.glyph("paintbrush.fill").toStdString(), glyphOf("paintbrush.fill"));
    EXPECT_EQ(table.glyph(""), "");
}

} // namespace
} // namespace orvanta::test
