#include "tests/app/views/PanelTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace orvanta::test {
namespace {

class PanelWithManyPrograms : public PanelTest {
protected:
    void listMany(int count) {
        for (std::int32_t pid = 100; pid < 100 + count; ++pid)
            list(pid, "Program " + std::to_string(pid), std::nullopt, pid % 3 != 0);
        refresh();
    }

    void scrollTo(double y) {
        appList()->setProperty("contentY", y);
        settleView();
    }

    void scrollToTop() {
        QMetaObject::invokeMethod(appList(), "positionViewAtBeginning");
        settleView();
    }

    /// How many rows are made, whether on the screen or beside it.
    [[nodiscard]] std::ptrdiff_t rowsMade() const {
        const auto* const content = appList()->property("contentItem").value<QQuickItem*>();
        return std::ranges::count_if(content->childItems(), [](const QQuickItem* item) {
            return item->inherits("AppVolumeRow") || item->property("item").isValid();
        });
    }
};

TEST_F(PanelWithManyPrograms, MakesOnlyTheRowsThatAreSeen) {
    listMany(200);
    showPanel();
    EXPECT_TRUE(says("200 apps"));
    EXPECT_GT(rowsMade(), 9);
    EXPECT_LT(rowsMade(), 40);
    for (int y = 0; y < 7000; y += 300)
        scrollTo(y);
    EXPECT_LT(rowsMade(), 60) << "rows are used again";
}

TEST_F(PanelWithManyPrograms, KeepsAnUnfoldedRowUnfoldedThatWasScrolledAway) {
    listMany(200);
    model->toggleTap(discovery->apps[1]);
    showPanel();
    click("Equalizer for Program 101");
    EXPECT_NE(control("Bass"), nullptr);
    scrollTo(5000);
    EXPECT_EQ(control("Bass"), nullptr);
    scrollToTop();
    EXPECT_NE(control("Bass"), nullptr);
}

TEST_F(PanelWithManyPrograms, ShowsEachRowsOwnApplicationWhileAllOfThemComeAndGo) {
    listMany(200);
    showPanel();
    std::mt19937 random(20261122);
    const auto upTo = [&](std::size_t most) {
        return std::uniform_int_distribution<std::size_t>(0, most)(random);
    };
    std::int32_t nextPid = 1000;
    for (int step = 0; step < 60; ++step) {
        auto& apps = discovery->apps;
        for (int change = 0; change < 5; ++change) {
            const std::size_t place = upTo(apps.size() - 1);
            switch (upTo(4)) {
            case 0:
                apps.erase(apps.begin() + static_cast<std::ptrdiff_t>(place));
                break;
            case 1:
                list(nextPid, "Program " + std::to_string(nextPid));
                ++nextPid;
                break;
            case 2:
                apps[place].isPlaying ^= true;
                break;
            case 3:
                model->toggleTap(AudioApp(apps[upTo(std::min<std::size_t>(9, place))]));
                break;
            default:
                scrollTo(static_cast<double>(upTo(3000)));
            }
        }
        refresh();
        settleView();
        EXPECT_TRUE(says(QString("%1 apps").arg(apps.size()))) << "step " << step;
        scrollToTop();
        const AppItem* const first =
            mixer->apps()->data(mixer->apps()->index(0), AppListModel::itemRole).value<AppItem*>();
        ASSERT_NE(control(first->tapLabel()), nullptr) << "step " << step;
    }
}

TEST_F(PanelWithManyPrograms, BearsThatAllProgramsQuitAtOnce) {
    listMany(200);
    for (std::size_t place = 0; place < 20; ++place)
        model->toggleTap(discovery->apps[place]);
    showPanel();
    scrollTo(800);
    discovery->apps.clear();
    refresh();
    settleView();
    EXPECT_TRUE(says("0 apps"));
    EXPECT_TRUE(says("No audio apps detected"));
    letMetersRise();
    listMany(3);
    settleView();
    EXPECT_NE(control("Tap Program 101 audio"), nullptr);
}

} // namespace
} // namespace orvanta::test
