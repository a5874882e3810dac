#include "app/demo/DemoIcon.h"

#include "app/demo/DemoProgram.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <fstream>
#include <stdexcept>

namespace orvanta::demo {
namespace {

constexpr IconTile kGlobe{"globe", 0xFF00FFFFU, 0xFF0000FFU};

class DemoIcons : public testing::Test {
protected:
    test::TemporaryDirectory directory;
};

/// How many pixels of the tile are about white: its symbol.
int whitePixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y).lightness() > 235 ? 1 : 0;
    return count;
}

TEST_F(DemoIcons, AreWhiteSymbolsOnColouredRoundedTiles) {
    const QImage image = paintTile(kGlobe, 64);
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << "a corner";
    EXPECT_EQ(image.pixelColor(63, 63).alpha(), 0) << "a corner";
    const QColor upper = image.pixelColor(6, 14);
    const QColor lower = image.pixelColor(57, 50);
    EXPECT_EQ(upper.alpha(), 255);
    EXPECT_GT(upper.green(), 150);
    EXPECT_LT(lower.green(), 100);
    EXPECT_EQ(lower.blue(), 255);
    EXPECT_GT(whitePixels(image), 64 * 64 / 20);
    EXPECT_LT(whitePixels(image), 64 * 64 / 3);
}

TEST_F(DemoIcons, HaveTheirSymbolInTheMiddle) {
    const QImage image = paintTile(kGlobe, 128);
    int left = 128;
    int right = 0;
    for (int x = 0; x < 128; ++x) {
        for (int y = 30; y < 98; ++y) {
            if (image.pixelColor(x, y).lightness() > 235) {
                left = std::min(left, x);
                right = std::max(right, x);
            }
        }
    }
    EXPECT_GT(right - left, 40);
    EXPECT_NEAR(left + right, 127, 2);
}

TEST_F(DemoIcons, AreTheSameAtEveryPainting) {
    EXPECT_EQ(paintTile(kGlobe, 64), paintTile(kGlobe, 64));
    for (const DemoProgram& one : demoPrograms())
        for (const DemoProgram& other : demoPrograms())
            EXPECT_EQ(paintTile(one.tile, 64) == paintTile(other.tile, 64), one.pid == other.pid);
}

TEST_F(DemoIcons, HaveAFileThatNeedNotBeEnlarged) {
    const auto folder = directory.path() / "new" / "icons";
    const DemoIcon icon("globe", kGlobe, folder);
    EXPECT_EQ(icon.cacheKey(), "globe");
    const auto widthOf = [&](int pixels) {
        return QImage(QString::fromStdString(icon.imageFile(pixels).value().string())).width();
    };
    EXPECT_EQ(widthOf(1), 32);
    EXPECT_EQ(widthOf(32), 32);
    EXPECT_EQ(widthOf(33), 64);
    EXPECT_EQ(widthOf(128), 128);
    EXPECT_EQ(widthOf(500), 128);
}

TEST_F(DemoIcons, GivePlaceToNewOnes) {
    const DemoIcon first("icon", {"globe", 0xFF000000U, 0xFF000000U}, directory.path());
    const DemoIcon second("icon", kGlobe, directory.path());
    const QImage stored(QString::fromStdString(second.imageFile(64).value().string()));
    EXPECT_EQ(stored.pixelColor(57, 50).blue(), 255);
}

TEST_F(DemoIcons, SayWhichFileCannotBeWritten) {
    const auto file = directory.path() / "no-folder";
    std::ofstream(file) << "a file";
    try {
        const DemoIcon icon("globe", kGlobe, file);
        FAIL() << "was written";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("no-folder/globe-32.png cannot be written"));
    }
}

} // namespace
} // namespace orvanta::demo
