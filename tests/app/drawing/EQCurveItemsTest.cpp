// What the EQ curve's items paint, and when.

#include "app/drawing/EQCurveGrid.h"
#include "app/drawing/EQCurveHandle.h"
#include "app/drawing/EQCurveLine.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QQuickWindow>

namespace orvanta::test {
namespace {

constexpr QSize kCanvas{376, 160};
/// Of the canvas, where 0 dB is.
constexpr int kZeroLine = 80;

QImage paintedBy(QQuickPaintedItem& item) {
    QImage image(item.size().toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    item.paint(&painter);
    return image;
}

/// Of the pixels of a row or column, the one whose paint is strongest.
int strongestInColumn(const QImage& image, int x) {
    int strongest = 0;
    for (int y = 0; y < image.height(); ++y)
        if (image.pixelColor(x, y).alpha() > image.pixelColor(x, strongest).alpha())
            strongest = y;
    return strongest;
}

QList<double> gainsWith(int band, double gain) {
    QList<double> gains(10, 0.0);
    gains[band] = gain;
    return gains;
}

/// A line that counts how often it is painted.
class CountedLine final : public EQCurveLine {
public:
    void paint(QPainter* painter) override {
        ++paints;
        EQCurveLine::paint(painter);
    }

    int paints = 0;
};

class EQCurveItems : public testing::Test {
protected:
    EQCurveItems() {
        line.setSize(kCanvas);
        line.setProperty("color", QColor(Qt::red));
    }

    CountedLine line;
};

TEST_F(EQCurveItems, ALineIsStraightAndItsAreaEmptyWhenFlat) {
    line.setProperty("gains", QVariant::fromValue(QList<double>(10, 0.0)));
    const QImage image = paintedBy(line);
    for (const int x : {14, 100, 200, 300, 360})
        for (int y = 0; y < image.height(); ++y)
            EXPECT_EQ(image.pixelColor(x, y).alpha(),
                      y == kZeroLine - 1 || y == kZeroLine ? 255 : 0)
                << x << ", " << y;
}

TEST_F(EQCurveItems, ALineLeavesItsPaddingFree) {
    line.setProperty("gains", QVariant::fromValue(QList<double>(10, 12.0)));
    const QImage image = paintedBy(line);
    for (int y = 0; y < image.height(); ++y) {
        // The ends of a slanting stroke slant as well, by less than its half.
        EXPECT_EQ(image.pixelColor(10, y).alpha(), 0) << y;
        EXPECT_EQ(image.pixelColor(365, y).alpha(), 0) << y;
    }
    // Half of the stroke is beyond the drawing where the sum stops at its edge.
    EXPECT_EQ(image.pixelColor(200, 10).alpha(), 0);
    EXPECT_EQ(image.pixelColor(200, 11).alpha(), 255);
}

TEST_F(EQCurveItems, AnAreaIsStrongerTheFurtherFromZero) {
    line.setProperty("gains", QVariant::fromValue(gainsWith(5, 12.0)));
    const QImage image = paintedBy(line);
    // 1 kHz, at which the band is.
    constexpr int kPeak = 211;
    EXPECT_NEAR(strongestInColumn(image, kPeak), 12.0 + 2.0 / 28.0 * 136.0, 1.5);
    EXPECT_NEAR(image.pixelColor(kPeak, kZeroLine - 2).alphaF(), 0.05, 0.02);
    EXPECT_NEAR(image.pixelColor(kPeak, 46).alphaF(), 0.23, 0.02);
    EXPECT_EQ(image.pixelColor(kPeak, kZeroLine + 2).alpha(), 0);
}

TEST_F(EQCurveItems, ALineGoesDownForACut) {
    line.setProperty("gains", QVariant::fromValue(gainsWith(5, -12.0)));
    const QImage image = paintedBy(line);
    EXPECT_NEAR(strongestInColumn(image, 211), 12.0 + 26.0 / 28.0 * 136.0, 1.5);
}

TEST_F(EQCurveItems, ALineIsPaintedAgainOnlyWhenItLooksDifferent) {
    QQuickWindow window;
    window.resize(kCanvas);
    line.setParentItem(window.contentItem());
    const auto show = [&] {
        (void)window.grabWindow();
    };
    const auto gains = QVariant::fromValue(gainsWith(5, 12.0));
    line.setProperty("gains", gains);
    show();
    EXPECT_EQ(line.paints, 1);
    line.setProperty("gains", gains);
    line.setProperty("color", QColor(Qt::red));
    line.setSize(kCanvas);
    line.setPosition({3, 3});
    show();
    EXPECT_EQ(line.paints, 1);
    line.setProperty("gains", QVariant::fromValue(gainsWith(5, 11.5)));
    show();
    EXPECT_EQ(line.paints, 2);
    line.setProperty("color", QColor(Qt::blue));
    show();
    EXPECT_EQ(line.paints, 3);
    line.setSize({200, 100});
    show();
    EXPECT_EQ(line.paints, 4);
    line.setParentItem(nullptr);
}

TEST_F(EQCurveItems, AGridHasALineForEverySixDecibelsAndForEveryBand) {
    EQCurveGrid grid;
    grid.setSize(kCanvas);
    grid.setProperty("color", QColor(255, 255, 255, 128));
    grid.setProperty("zeroColor", QColor(255, 255, 255, 255));
    const QImage image = paintedBy(grid);
    // Between the bands.
    constexpr int kFree = 50;
    int rows = 0;
    for (int y = 0; y < image.height(); ++y)
        rows +=
            image.pixelColor(kFree, y).alpha() > 0 && image.pixelColor(kFree, y - 1).alpha() == 0;
    EXPECT_EQ(rows, 5);
    EXPECT_EQ(strongestInColumn(image, kFree) / 2, kZeroLine / 2);
    int columns = 0;
    for (int x = 1; x < image.width(); ++x)
        columns += image.pixelColor(x, 30).alpha() > 0 && image.pixelColor(x - 1, 30).alpha() == 0;
    EXPECT_EQ(columns, 10);
}

TEST_F(EQCurveItems, AHandleGlowsWhereItsBandDoesSomething) {
    EQCurveHandle handle;
    handle.setSize({24, 24});
    handle.setProperty("color", QColor(Qt::red));
    handle.setProperty("isFlat", false);
    const QImage image = paintedBy(handle);
    EXPECT_EQ(image.pixelColor(12, 12), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(15, 12), QColor(Qt::red));
    EXPECT_GT(image.pixelColor(19, 12).alpha(), image.pixelColor(21, 12).alpha());
    EXPECT_GT(image.pixelColor(21, 12).alpha(), 0);
    EXPECT_EQ(image.pixelColor(23, 12).alpha(), 0);
}

TEST_F(EQCurveItems, AFlatHandleIsDimAndHidesTheCurve) {
    EQCurveHandle handle;
    handle.setSize({24, 24});
    handle.setProperty("well", QColor(Qt::black));
    const QImage image = paintedBy(handle);
    const QColor middle = image.pixelColor(12, 12);
    EXPECT_EQ(middle.alpha(), 255);
    EXPECT_NEAR(middle.redF(), 0.16, 0.02);
    EXPECT_EQ(middle.red(), middle.blue());
    EXPECT_EQ(image.pixelColor(19, 12).alpha(), 0);
}

TEST_F(EQCurveItems, AHandleHasARingWhileItIsHeld) {
    EQCurveHandle handle;
    handle.setSize({24, 24});
    handle.setProperty("color", QColor(Qt::red));
    handle.setProperty("isHeld", true);
    // Between radius 7 and 8.
    EXPECT_GT(paintedBy(handle).pixelColor(19, 12).alpha(), 200);
    handle.setProperty("isHeld", false);
    EXPECT_EQ(paintedBy(handle).pixelColor(19, 12).alpha(), 0);
}

} // namespace
} // namespace orvanta::test
