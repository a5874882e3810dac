#include "app/drawing/Fonts.h"

#include "app/drawing/Symbols.h"

#include <gtest/gtest.h>

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QRawFont>

namespace orvanta::test {
namespace {

class Fonts : public testing::Test {
protected:
    void SetUp() override { loadFonts(); }

    static QFont font(const char* family, QFont::Weight weight = QFont::Normal) {
        QFont result{QString(family)};
        result.setPixelSize(32);
        result.setWeight(weight);
        return result;
    }

    static QString glyph(std::string_view name) {
        const std::string_view text = glyphOf(name);
        return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
    }
};

TEST_F(Fonts, AreKnownByTheirFamilies) {
    EXPECT_EQ(QFontInfo(font(kSymbolFamily)).family(), kSymbolFamily);
    EXPECT_EQ(QFontInfo(font(kFigureFamily)).family(), kFigureFamily);
    EXPECT_EQ(QFontInfo(font(kTextFamily)).family(), kTextFamily);
    EXPECT_EQ(QFontDatabase::styles(kTextFamily).size(), 4);
    EXPECT_EQ(QFontDatabase::styles(kFigureFamily).size(), 2);
}

TEST_F(Fonts, AreLoadedOnce) {
    loadFonts();
    EXPECT_EQ(QFontDatabase::styles(kFigureFamily).size(), 2);
}

TEST_F(Fonts, DrawEachSymbolAsOneGlyphOfOneWidth) {
    const QFontMetricsF metrics(font(kSymbolFamily));
    for (const Symbol& symbol : symbols())
        EXPECT_LT(metrics.horizontalAdvance(glyph(symbol.name)), 48) << symbol.name;
    EXPECT_GT(metrics.horizontalAdvance(glyph("globe")), 16);
}

TEST_F(Fonts, HaveFiguresOfOneWidth) {
    for (const auto weight : {QFont::Medium, QFont::DemiBold}) {
        const QFontMetricsF metrics(font(kFigureFamily, weight));
        const double zero = metrics.horizontalAdvance('0');
        EXPECT_GT(zero, 0);
        for (const char figure : {'1', '2', '3', '4', '5', '6', '7', '8', '9'})
            // One figure is a thousandth narrower than the others by design, which nobody sees.
            EXPECT_NEAR(metrics.horizontalAdvance(QChar(figure)), zero, 0.1) << figure;
    }
}

} // namespace
} // namespace orvanta::test
