// Whether what can be pressed can be hit.

#include "app/controls/AssistedItem.h"
#include "tests/app/views/PanelTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>

namespace orvanta::test {
namespace {

/// The side of the square that a hand is sure to hit.
constexpr int kAim = 24;

class Reach : public PanelTest {
protected:
    /// What a press at this place of the window comes to; null where it comes to nothing.
    [[nodiscard]] static QQuickItem* hit(QQuickItem& item, QPointF place) {
        if (!item.isVisible() || !item.isEnabled())
            return nullptr;
        const QPointF here = item.mapFromScene(place);
        if (item.clip() && !item.contains(here))
            return nullptr;
        QList<QQuickItem*> children = item.childItems();
        std::ranges::stable_sort(children, {}, &QQuickItem::z);
        std::ranges::reverse(children);
        for (QQuickItem* const child : children)
            if (QQuickItem* const found = hit(*child, place))
                return found;
        const bool takesPresses = (item.acceptedMouseButtons() & Qt::LeftButton) != 0;
        return takesPresses && item.contains(here) ? &item : nullptr;
    }

    [[nodiscard]] bool isHit(const QQuickItem& control, double x, double y) const {
        const QQuickItem* const found = hit(*window->contentItem(), {x, y});
        return found != nullptr && (found == &control || control.isAncestorOf(found));
    }

    /// Of the place round the middle of a control that comes to it, pixel by pixel.
    [[nodiscard]] QSize reachOf(QQuickItem& control) const {
        const QPointF middle = control.mapToScene({control.width() / 2, control.height() / 2});
        const auto count = [&](double dx, double dy) {
            // Within the first pixel's middle on both sides.
            int pixels = 0;
            for (const int way : {-1, 1})
                for (int step = 0; step < 1000; ++step) {
                    const double by = way * (step + 0.5);
                    if (!isHit(control, middle.x() + by * dx, middle.y() + by * dy))
                        break;
                    ++pixels;
                }
            return pixels;
        };
        return {count(1, 0), count(0, 1)};
    }

    [[nodiscard]] std::vector<QQuickItem*> pressables() const {
        std::vector<QQuickItem*> found;
        for (QQuickItem* const item : visibleItems()) {
            const QAccessible::Role role = roleOf(*item);
            if ((item->inherits("orvanta::AssistedItem") && item->activeFocusOnTab()) ||
                role == QAccessible::MenuItem)
                found.push_back(item);
        }
        return found;
    }

    /// Of the list, whose edge is not to cut anything off.
    void bringToTheMiddle(QQuickItem& item) {
        QQuickItem* const apps = appList();
        if (apps == nullptr || !apps->isAncestorOf(&item))
            return;
        const double middle = item.mapToItem(apps, {0, item.height() / 2}).y();
        const double least = apps->property("originY").toDouble();
        const double most =
            std::max(least, least + apps->property("contentHeight").toDouble() - apps->height());
        apps->setProperty("contentY", std::clamp(apps->property("contentY").toDouble() + middle -
                                                     apps->height() / 2,
                                                 least, most));
        settleView();
    }

    /// Every pressable of the window; `smaller` says how high those are that have no room.
    void expectAllCanBeHit(const std::map<QString, int>& smaller = {}) {
        const auto all = pressables();
        ASSERT_FALSE(all.empty());
        for (QQuickItem* const control : all) {
            bringToTheMiddle(*control);
            const QSize reach = reachOf(*control);
            const QString name = nameOf(*control);
            const auto listed = smaller.find(name);
            const int height = listed == smaller.end() ? kAim : listed->second;
            EXPECT_GE(reach.width(), kAim) << name.toStdString();
            EXPECT_GE(reach.height(), height) << name.toStdString();
        }
    }
};

TEST_F(Reach, EverythingInThePanelCanBeHit) {
    addDevice("monitors", "Studio Monitors");
    for (const std::int32_t pid : {10, 11})
        listAndTap(pid, pid == 10 ? "Vinyl" : "Telly");
    list(12, "Chatter");
    refresh();
    for (const std::int32_t pid : {10, 11}) {
        model->setEQ(pid, 3, 4.0F);
        model->setNoiseGate(pid, true, -60.0F);
    }
    model->toggleRecording(10);
    showUnfolded(10, 11);
    expectAllCanBeHit({{"Quit Orvanta", 20},
                       {"Thresh compressor", 16},
                       {"Ratio compressor", 16},
                       {"Makeup compressor", 16}});
}

TEST_F(Reach, EveryEntryOfAMenuCanBeHit) {
    addDevice("monitors", "Studio Monitors");
    showTapped(10, "Vinyl");
    click("Output device for Vinyl");
    for (const char* const name : {"System Default", "Studio Monitors"}) {
        const QSize reach = reachOf(the(name));
        EXPECT_GE(reach.width(), kAim) << name;
        EXPECT_GE(reach.height(), kAim) << name;
    }
}

TEST_F(Reach, APressBesideASwitchStillSwitchesIt) {
    showTapped(10, "Vinyl");
    QQuickItem& gate = the("Noise gate for Vinyl");
    const QPoint below = middleOf(gate) + QPoint(0, static_cast<int>(gate.height() / 2) + 3);
    press(below);
    release(below);
    EXPECT_TRUE(isChecked(the("Noise gate for Vinyl")));
}

TEST_F(Reach, APressOnTheLowestPixelOfTheConsolesButtonDoesNotQuit) {
    showPanel();
    QQuickItem& console = the("Open Sound Command Center");
    const QPoint lowest = console.mapToScene({console.width() / 2, console.height() - 1}).toPoint();
    press(lowest);
    release(lowest);
    EXPECT_EQ(quits, 0);
    EXPECT_FALSE(windows.calls.empty());
}

class ReachOfSmallWindows : public Reach, public testing::WithParamInterface<const char*> {};

TEST_P(ReachOfSmallWindows, EverythingCanBeHit) {
    std::ofstream(crashReporter.logDir() / "crash-2026-11-22T10:00:00Z.log") << "it broke";
    shell->setCanCheckForUpdates(true);
    show(GetParam());
    expectAllCanBeHit();
}

INSTANTIATE_TEST_SUITE_P(All, ReachOfSmallWindows,
                         testing::Values("welcome/AboutWindow.qml",
                                         "welcome/OnboardingWindow.qml"));

} // namespace
} // namespace orvanta::test
