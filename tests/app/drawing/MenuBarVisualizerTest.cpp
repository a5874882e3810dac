#include "app/drawing/MenuBarVisualizer.h"

#include "app/drawing/Fonts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <utility>
#include <vector>

namespace orvanta::test {
namespace {

using testing::Each;
using testing::Le;

/// At twice the size, the middles of the bars of a picture: this pixel and the next.
constexpr std::array kBarMiddles{3, 10, 17, 24, 31};

/// Paint in the column, in pixels: its opacities added up.
double paintAt(const QImage& image, int x) {
    double sum = 0.0;
    for (int y = 0; y < image.height(); ++y)
        sum += static_cast<double>(image.pixelColor(x, y).alphaF());
    return sum;
}

/// How high the bars of a picture are, to half a logical pixel.
std::vector<double> barsOf(const QImage& image) {
    std::vector<double> heights;
    for (const int x : kBarMiddles)
        heights.push_back((paintAt(image, x) + paintAt(image, x + 1)) / 4.0);
    return heights;
}

bool isBlank(const QImage& image) {
    for (int x = 0; x < image.width(); ++x)
        if (paintAt(image, x) > 0.0)
            return false;
    return true;
}

QString descriptionIn(const QImage& image) {
    return image.text("Description");
}

class MenuBarVisualizerTest : public testing::Test {
protected:
    void SetUp() override { loadFonts(); }

    /// Frames without sound until the bars are down.
    QImage fadeOut() {
        QImage frame = visualizer.nextFrame(0.0F);
        for (int count = 0; count < 100 && descriptionIn(frame).isEmpty(); ++count)
            frame = visualizer.nextFrame(0.0F);
        return frame;
    }

    MenuBarVisualizer visualizer;
};

TEST_F(MenuBarVisualizerTest, BeginsOnAndDown) {
    EXPECT_TRUE(visualizer.isEnabled());
    EXPECT_THAT(visualizer.barHeights(), Each(0.0));
    EXPECT_EQ(visualizer.previousLevel(), 0.0F);
}

TEST_F(MenuBarVisualizerTest, DrawsBarsOfTheirHeightsFromTheBottomUp) {
    const QImage frame = visualizer.nextFrame(1.0F);
    EXPECT_EQ(frame.size(), QSize(36, 36));
    EXPECT_EQ(frame.devicePixelRatio(), 2.0);
    const auto bars = barsOf(frame);
    for (std::size_t bar = 0; bar < bars.size(); ++bar)
        EXPECT_NEAR(bars.at(bar), 14.0 * VisualizerBars::weights.at(bar), 0.7) << bar;
    for (const int x : kBarMiddles) {
        EXPECT_GT(frame.pixelColor(x, 30).alpha(), 200) << x;
        EXPECT_EQ(frame.pixelColor(x, 2).alpha(), 0) << x;
        EXPECT_EQ(frame.pixelColor(x, 33).alpha(), 0) << x;
    }
}

TEST_F(MenuBarVisualizerTest, LetsNoBarVanish) {
    for (const double height : barsOf(visualizer.nextFrame(0.002F)))
        EXPECT_NEAR(height, 2.0, 0.5);
}

TEST_F(MenuBarVisualizerTest, PartsItsBarsByWholePixels) {
    const QImage frame = visualizer.nextFrame(1.0F);
    for (const int x : kBarMiddles)
        for (const auto& [from, isPainted] :
             {std::pair(-2, false), std::pair(-1, true), std::pair(2, true), std::pair(3, false)})
            EXPECT_EQ(frame.pixelColor(x + from, 25).alpha(), isPainted ? 255 : 0) << x + from;
}

TEST_F(MenuBarVisualizerTest, DrawsInOneColour) {
    MenuBarVisualizer green({.barColor = QColor(0, 255, 0)});
    const QImage frame = green.nextFrame(1.0F);
    EXPECT_EQ(frame.pixelColor(10, 20), QColor(0, 255, 0));
    for (int x = 0; x < frame.width(); ++x)
        for (int y = 0; y < frame.height(); ++y)
            EXPECT_EQ(frame.pixelColor(x, y).red(), 0);
}

TEST_F(MenuBarVisualizerTest, DrawsInThePixelsOfTheScreen) {
    MenuBarVisualizer coarse({.devicePixelRatio = 1.0});
    EXPECT_EQ(coarse.nextFrame(1.0F).size(), MenuBarVisualizer::iconSize);
    MenuBarVisualizer fine({.devicePixelRatio = 3.0});
    EXPECT_EQ(fine.nextFrame(1.0F).size(), QSize(54, 54));
    EXPECT_FALSE(isBlank(coarse.nextFrame(1.0F)));
}

TEST_F(MenuBarVisualizerTest, ShowsASymbolWithADescriptionWhenItHasHeardNothing) {
    const QImage frame = visualizer.nextFrame(0.0F);
    EXPECT_EQ(descriptionIn(frame), "Orvanta");
    EXPECT_EQ(frame.size(), QSize(36, 36));
    EXPECT_FALSE(isBlank(frame));
    // A picture of its own, not five bars.
    EXPECT_GT(paintAt(frame, 7), 1.0);
}

TEST_F(MenuBarVisualizerTest, LetsItsBarsDownBeforeItShowsTheSymbol) {
    (void)visualizer.nextFrame(1.0F);
    for (int frames = 1; frames < 44; ++frames)
        EXPECT_EQ(descriptionIn(visualizer.nextFrame(0.0F)), QString()) << frames;
    EXPECT_GT(visualizer.barHeights()[1], 0.01);
    EXPECT_EQ(descriptionIn(visualizer.nextFrame(0.0F)), "Orvanta");
    EXPECT_THAT(visualizer.barHeights(), Each(Le(0.01)));
}

TEST_F(MenuBarVisualizerTest, FadesByATenthWithoutSound) {
    (void)visualizer.nextFrame(1.0F);
    const auto bars = barsOf(visualizer.nextFrame(0.0F));
    EXPECT_DOUBLE_EQ(visualizer.barHeights()[1], 0.9);
    EXPECT_NEAR(bars[1], 14.0 * 0.9, 0.7);
    EXPECT_EQ(visualizer.previousLevel(), 1.0F);
}

TEST_F(MenuBarVisualizerTest, TakesALevelBeyondFullScaleAsFullAndDecaysFromIt) {
    (void)visualizer.nextFrame(2.0F);
    EXPECT_EQ(visualizer.barHeights(), VisualizerBars::weights);
    EXPECT_EQ(visualizer.previousLevel(), 2.0F);
    (void)visualizer.nextFrame(0.5F);
    EXPECT_FLOAT_EQ(visualizer.previousLevel(), 1.7F);
}

TEST_F(MenuBarVisualizerTest, HearsNothingWhileItIsOff) {
    (void)visualizer.nextFrame(1.0F);
    visualizer.setEnabled(false);
    EXPECT_FALSE(visualizer.isEnabled());
    (void)visualizer.nextFrame(1.0F);
    EXPECT_DOUBLE_EQ(visualizer.barHeights()[1], 0.9);
    EXPECT_EQ(descriptionIn(fadeOut()), "Orvanta");
    EXPECT_EQ(descriptionIn(visualizer.nextFrame(1.0F)), "Orvanta");
    visualizer.setEnabled(true);
    EXPECT_EQ(descriptionIn(visualizer.nextFrame(1.0F)), QString());
}

TEST_F(MenuBarVisualizerTest, ForgetsWhatItHasHeardWhenItIsReset) {
    (void)visualizer.nextFrame(1.0F);
    visualizer.setEnabled(false);
    visualizer.reset();
    EXPECT_THAT(visualizer.barHeights(), Each(0.0));
    EXPECT_EQ(visualizer.previousLevel(), 0.0F);
    EXPECT_FALSE(visualizer.isEnabled());
    EXPECT_EQ(descriptionIn(visualizer.nextFrame(0.0F)), "Orvanta");
}

TEST_F(MenuBarVisualizerTest, IsEmptyWhereThereIsNoSymbol) {
    MenuBarVisualizer without({.symbolFamily = "no such family"});
    const QImage frame = without.nextFrame(0.0F);
    EXPECT_EQ(frame.size(), QSize(36, 36));
    EXPECT_TRUE(isBlank(frame));
    EXPECT_FALSE(isBlank(without.nextFrame(1.0F)));
}

} // namespace
} // namespace orvanta::test
