#include "tests/app/views/PanelTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>
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

    void goTo(int index) {
        QMetaObject::invokeMethod(appList(), "positionViewAtIndex", Q_ARG(int, index),
                                  Q_ARG(int, 0));
        settleView();
    }

    struct Row {
        bool isUnfolding;
        double height;
        /// What the height is to be.
        double contentHeight;
    };

    [[nodiscard]] std::vector<Row> rows() const {
        std::vector<Row> found;
        const auto* const content = appList()->property("contentItem").value<QQuickItem*>();
        for (const QQuickItem* const row : content->childItems()) {
            if (!row->property("isUnfolding").isValid() || !row->isVisible())
                continue;
            for (const QQuickItem* const card : row->childItems())
                for (const QQuickItem* const inside : card->childItems())
                    if (inside->inherits("QQuickColumn"))
                        found.push_back(
                            {.isUnfolding = row->property("isUnfolding").toBool(),
                             .height = card->height(),
                             .contentHeight =
                                 inside->height() +
                                 (row->property("item").value<AppItem*>()->isTapped() ? 4 : 0)});
        }
        return found;
    }

    /// Whether it comes to be so of every row; what moves takes its time.
    template <typename IsSo>
    bool waitForRows(IsSo isSo) {
        return QTest::qWaitFor([&] {
            settleView();
            const auto all = rows();
            return !all.empty() && std::ranges::all_of(all, isSo);
        });
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

TEST_F(PanelWithManyPrograms, AnimatesOnlyARowThatUnfoldsItself) {
    theme.setLook({.isMotionReduced = false, .hasCompositor = true});
    listMany(200);
    for (const std::size_t place : {1U, 2U, 5U, 30U, 31U})
        model->toggleTap(AudioApp(discovery->apps[place]));
    showPanel();
    ASSERT_TRUE(waitForRows([](const Row& row) { return !row.isUnfolding; }));
    for (const int index : {25, 120, 3, 90, 0, 40, 0}) {
        goTo(index);
        ASSERT_FALSE(rows().empty()) << "at " << index;
        for (const Row& row : rows()) {
            EXPECT_FALSE(row.isUnfolding) << "at " << index;
            EXPECT_EQ(row.height, row.contentHeight) << "at " << index;
        }
    }
    // The list counts on from where it thought to be.
    goTo(0);
    itemOf(discovery->apps[1].pid).toggleEQ();
    const auto moving = rows();
    EXPECT_EQ(std::ranges::count(moving, true, &Row::isUnfolding), 1);
    EXPECT_TRUE(waitForRows(
        [](const Row& row) { return !row.isUnfolding && row.height == row.contentHeight; }));
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
