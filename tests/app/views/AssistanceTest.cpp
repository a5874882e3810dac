// What people meet who use the panel by key, or by ear.

#include "tests/app/views/PanelTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QKeyEvent>
#include <algorithm>
#include <map>

namespace orvanta::test {
namespace {

class Assistance : public PanelTest {
protected:
    /// Everything that a row can show.
    void showEverything() {
        addDevice("monitors", "Studio Monitors");
        for (const std::int32_t pid : {10, 11})
            listAndTap(pid, pid == 10 ? "Vinyl" : "Telly");
        for (const std::int32_t pid : {10, 11}) {
            model->setEQ(pid, 3, 4.0F);
            model->setNoiseGate(pid, true, -60.0F);
            model->toggleRecording(pid);
        }
        showUnfolded(10, 11);
    }

    [[nodiscard]] static std::string describe(QQuickItem& item) {
        return item.metaObject()->className() + std::string(" \"") +
               item.objectName().toStdString() + '"';
    }

    [[nodiscard]] static bool canBeUsed(QQuickItem& item) {
        return item.activeFocusOnTab() || item.inherits("orvanta::AssistedItem") ||
               item.property("stepSize").isValid();
    }

    void expectAllHaveRolesAndNames() {
        const auto seen = seenByTools();
        int usable = 0;
        for (QQuickItem* const item : visibleItems()) {
            if (!canBeUsed(*item))
                continue;
            ++usable;
            const QAccessible::Role role = roleOf(*item);
            EXPECT_TRUE(role != QAccessible::Client && role != QAccessible::NoRole)
                << describe(*item) << " has no role";
            EXPECT_FALSE(nameOf(*item).isEmpty()) << describe(*item) << " has no name";
            EXPECT_TRUE(std::ranges::any_of(
                seen, [&](QAccessibleInterface* interface) { return interface->object() == item; }))
                << nameOf(*item).toStdString() << " is out of reach";
        }
        EXPECT_GT(usable, 0);
        for (QAccessibleInterface* const interface : seen) {
            EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty())
                << interface->object()->metaObject()->className() << " "
                << interface->object()->property("text").toString().toStdString();
        }
    }

    /// Line by line, each from the left.
    static void sortByLines(std::vector<QQuickItem*>& items) {
        const auto middle = [](QQuickItem* item) {
            return item->mapToScene({item->width() / 2, item->height() / 2});
        };
        std::ranges::sort(items, {}, [&](QQuickItem* item) { return middle(item).y(); });
        constexpr double kLine = 7.0;
        for (auto first = items.begin(); first != items.end();) {
            const double y = middle(*first).y();
            const auto last = std::find_if(
                first, items.end(), [&](QQuickItem* item) { return middle(item).y() - y > kLine; });
            std::sort(first, last,
                      [&](QQuickItem* a, QQuickItem* b) { return middle(a).x() < middle(b).x(); });
            first = last;
        }
    }

    [[nodiscard]] QQuickItem& rowOf(QQuickItem& item) const {
        QQuickItem* row = &item;
        while (row->parentItem()->parentItem() != appList())
            row = row->parentItem();
        return *row;
    }

    /// What Tab should reach, in the order of reading: what stands above the list, the list, and
    /// what is below.
    [[nodiscard]] std::vector<QQuickItem*> inReadingOrder() const {
        std::vector<QQuickItem*> above;
        std::vector<QQuickItem*> listed;
        std::vector<QQuickItem*> below;
        for (QQuickItem* const item : visibleItems()) {
            if (!item->activeFocusOnTab() || !item->isEnabled())
                continue;
            if (appList()->isAncestorOf(item))
                listed.push_back(item);
            else if (item->mapToScene({}).y() < appList()->mapToScene({}).y())
                above.push_back(item);
            else
                below.push_back(item);
        }
        std::vector<QQuickItem*> items;
        const auto append = [&](std::vector<QQuickItem*> part) {
            sortByLines(part);
            items.insert(items.end(), part.begin(), part.end());
        };
        append(above);
        std::map<double, std::vector<QQuickItem*>> rows;
        for (QQuickItem* const item : listed)
            rows[rowOf(*item).y()].push_back(item);
        for (const auto& [top, row] : rows)
            append(row);
        append(below);
        return items;
    }

    [[nodiscard]] std::vector<std::string> namesOf(const std::vector<QQuickItem*>& items) const {
        std::vector<std::string> names;
        for (QQuickItem* const item : items)
            names.push_back(nameOf(*item).toStdString());
        return names;
    }

    /// What the keyboard goes through from the first control on, until it comes round.
    [[nodiscard]] std::vector<std::string> tabbed(Qt::Key key, QQuickItem& first) {
        std::vector<std::string> names;
        first.forceActiveFocus(Qt::TabFocusReason);
        constexpr std::size_t kMore = 300;
        do {
            names.push_back(nameOf(*window->activeFocusItem()).toStdString());
            this->key(key);
        } while (window->activeFocusItem() != &first && names.size() < kMore);
        return names;
    }

    void expectTabGoesByReadingOrder() {
        const auto order = inReadingOrder();
        ASSERT_FALSE(order.empty());
        EXPECT_EQ(tabbed(Qt::Key_Tab, *order.front()), namesOf(order));
    }
};

TEST_F(Assistance, EveryControlHasARoleAndAName) {
    showPanel();
    expectAllHaveRolesAndNames();
}

TEST_F(Assistance, EveryControlOfUnfoldedRowsHasARoleAndAName) {
    showEverything();
    expectAllHaveRolesAndNames();
    for (const double y : {200.0, 400.0, 600.0}) {
        appList()->setProperty("contentY", y);
        settleView();
        expectAllHaveRolesAndNames();
    }
}

TEST_F(Assistance, EveryEntryOfAMenuHasARoleAndAName) {
    showEverything();
    for (const char* const menu :
         {"Output device for Vinyl", "Presets", "Compressor preset for Vinyl"}) {
        click(menu);
        expectAllHaveRolesAndNames();
        const auto items = visibleItems();
        EXPECT_TRUE(std::ranges::any_of(items, [](QQuickItem* item) {
            return roleOf(*item) == QAccessible::MenuItem;
        })) << menu;
        key(Qt::Key_Escape);
    }
}

TEST_F(Assistance, EveryButtonCanBePressedByAnAssistiveTool) {
    showTapped(10, "Vinyl");
    const auto pressByTool = [this](const QString& name) {
        QAccessibleActionInterface* const actions =
            QAccessible::queryAccessibleInterface(&the(name))->actionInterface();
        ASSERT_NE(actions, nullptr);
        ASSERT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
        actions->doAction(QAccessibleActionInterface::pressAction());
        settleView();
    };
    pressByTool("Mute Vinyl");
    EXPECT_TRUE(model->isMuted(10));
    pressByTool("Noise gate for Vinyl");
    EXPECT_TRUE(mixer->hasTaps());
    EXPECT_NE(control("Noise gate threshold"), nullptr);
    pressByTool("Compressor preset for Vinyl");
    pressByTool("Music");
    EXPECT_EQ(model->getCompressor(10), CompressorPreset::music);
    pressByTool("Remove tap from Vinyl");
    EXPECT_FALSE(model->isTapped(10));
}

TEST_F(Assistance, ASliderTakesAValueFromAnAssistiveTool) {
    showTapped(10, "Vinyl");
    QAccessibleValueInterface* const value =
        QAccessible::queryAccessibleInterface(&the("Vinyl volume"))->valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->minimumValue(), 0.0);
    EXPECT_EQ(value->maximumValue(), 2.0);
    EXPECT_EQ(value->currentValue(), 1.0);
    value->setCurrentValue(0.5);
    settleView();
    EXPECT_EQ(model->volume(10), 0.5F);
    EXPECT_EQ(value->currentValue(), 0.5);
}

TEST_F(Assistance, TabGoesThroughAnEmptyPanelInReadingOrder) {
    showPanel();
    expectTabGoesByReadingOrder();
}

TEST_F(Assistance, TabGoesThroughUnfoldedRowsInReadingOrder) {
    showEverything();
    expectTabGoesByReadingOrder();
}

TEST_F(Assistance, BacktabGoesTheOtherWay) {
    showEverything();
    auto expected = namesOf(inReadingOrder());
    std::ranges::reverse(expected);
    EXPECT_EQ(tabbed(Qt::Key_Backtab, *inReadingOrder().back()), expected);
}

TEST_F(Assistance, AKeyThatIsHeldGoesOnByTabAndPressesOnce) {
    showTapped(10, "Vinyl");
    const auto repeat = [this](Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(window, &event);
        settleView();
    };
    the("Auto-tap").forceActiveFocus(Qt::TabFocusReason);
    repeat(Qt::Key_Tab);
    repeat(Qt::Key_Tab);
    EXPECT_EQ(nameOf(*window->activeFocusItem()), "Master volume");
    the("Mute Vinyl").forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Return);
    EXPECT_TRUE(model->isMuted(10));
    repeat(Qt::Key_Return);
    repeat(Qt::Key_Return);
    repeat(Qt::Key_Return);
    EXPECT_TRUE(model->isMuted(10));
}

TEST_F(Assistance, TabKeepsToTheReadingOrderWhenRowsHaveMoved) {
    for (std::int32_t pid = 10; pid < 15; ++pid)
        list(pid, "Program " + std::to_string(pid), std::nullopt, pid % 2 == 0);
    refresh();
    showPanel();
    for (AudioApp& app : discovery->apps)
        app.isPlaying = !app.isPlaying;
    refresh();
    model->toggleTap(discovery->apps[3]);
    settleView();
    expectTabGoesByReadingOrder();
}

TEST_F(Assistance, TabReachesEveryRowAndBringsItIntoView) {
    constexpr int kRows = 40;
    for (std::int32_t pid = 10; pid < 10 + kRows; ++pid)
        list(pid, "Program " + std::to_string(pid));
    refresh();
    showPanel();
    the("Switch theme").forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Tab);
    EXPECT_EQ(nameOf(*window->activeFocusItem()), "Master volume");
    for (std::int32_t pid = 10; pid < 10 + kRows; ++pid) {
        key(Qt::Key_Tab);
        QQuickItem& reached = *window->activeFocusItem();
        ASSERT_EQ(nameOf(reached), QString("Tap Program %1 audio").arg(pid));
        const QRectF place = reached.mapRectToItem(appList(), reached.boundingRect());
        ASSERT_GE(place.top(), 0.0) << pid;
        ASSERT_LE(place.bottom(), appList()->height()) << pid;
    }
    key(Qt::Key_Tab);
    EXPECT_EQ(nameOf(*window->activeFocusItem()), "Mute all");
    for (std::int32_t pid = 10 + kRows - 1; pid >= 10; --pid) {
        key(Qt::Key_Backtab);
        ASSERT_EQ(nameOf(*window->activeFocusItem()), QString("Tap Program %1 audio").arg(pid));
    }
}

TEST_F(Assistance, KeepsTheKeyboardOnAControlWhoseRowChanges) {
    showTapped(10, "Vinyl");
    the("Vinyl volume").forceActiveFocus(Qt::TabFocusReason);
    model->setVolume(10, 0.5F);
    list(11, "Telly");
    refresh();
    settleView();
    EXPECT_EQ(nameOf(*window->activeFocusItem()), "Vinyl volume");
}

} // namespace
} // namespace orvanta::test
