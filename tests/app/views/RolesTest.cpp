// What controls are to somebody who hears of them: what kind, in which state, and what can be done.

#include "tests/app/views/PanelTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <algorithm>

namespace orvanta::test {
namespace {

using testing::Contains;
using testing::Not;

class Roles : public PanelTest {
protected:
    [[nodiscard]] static QAccessibleInterface& interfaceOf(QQuickItem& item) {
        QAccessibleInterface* const found = QAccessible::queryAccessibleInterface(&item);
        if (found == nullptr)
            throw std::runtime_error("tools do not see it");
        return *found;
    }

    [[nodiscard]] QAccessible::State stateOf(const QString& name) const {
        return interfaceOf(the(name)).state();
    }

    /// What can be done to it, or its value; nothing else has any.
    template <typename Interface>
    [[nodiscard]] static Interface& had(Interface* interface) {
        if (interface == nullptr)
            throw std::runtime_error("it has none");
        return *interface;
    }

    [[nodiscard]] QStringList actionsOf(const QString& name) const {
        return had(interfaceOf(the(name)).actionInterface()).actionNames();
    }

    void act(QQuickItem& item, const QString& action) {
        had(interfaceOf(item).actionInterface()).doAction(action);
        settleView();
    }

    void act(const QString& name, const QString& action) { act(the(name), action); }

    [[nodiscard]] QAccessibleInterface* seen(QAccessible::Role role, const QString& name) const {
        const auto all = seenByTools();
        const auto found = std::ranges::find_if(all, [&](QAccessibleInterface* interface) {
            return interface->role() == role && interface->text(QAccessible::Name) == name;
        });
        return found == all.end() ? nullptr : *found;
    }
};

TEST_F(Roles, ASwitchIsABoxToCheck) {
    showTapped(10, "Vinyl");
    const QString gate = "Noise gate for Vinyl";
    EXPECT_EQ(roleOf(the(gate)), QAccessible::CheckBox);
    EXPECT_TRUE(stateOf(gate).checkable);
    EXPECT_FALSE(stateOf(gate).checked);
    EXPECT_THAT(actionsOf(gate), Contains(QAccessibleActionInterface::toggleAction()));
    EXPECT_THAT(actionsOf(gate), Contains(QAccessibleActionInterface::pressAction()));
    act(gate, QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(stateOf(gate).checked);
    act(gate, QAccessibleActionInterface::pressAction());
    EXPECT_FALSE(stateOf(gate).checked);
}

TEST_F(Roles, WhatKeepsItsNameAndShowsWhetherItIsOnIsABoxToCheck) {
    showPanel();
    for (const char* const name : {"Auto-tap", "Launch at login"}) {
        EXPECT_EQ(roleOf(the(name)), QAccessible::CheckBox) << name;
        EXPECT_FALSE(stateOf(name).checked) << name;
        act(name, QAccessibleActionInterface::toggleAction());
        EXPECT_TRUE(stateOf(name).checked) << name;
    }
}

TEST_F(Roles, WhatIsNamedByWhatItWouldDoIsAButton) {
    showTapped(10, "Vinyl");
    for (const char* const name : {"Mute Vinyl", "Record Vinyl audio", "Remove tap from Vinyl",
                                   "Mute all", "Quit Orvanta"}) {
        EXPECT_EQ(roleOf(the(name)), QAccessible::Button) << name;
        EXPECT_FALSE(stateOf(name).checkable) << name;
        EXPECT_THAT(actionsOf(name), Not(Contains(QAccessibleActionInterface::toggleAction())))
            << name;
    }
}

TEST_F(Roles, AMenuButtonSaysThatItOpensAMenuAndWhetherItHas) {
    addDevice("monitors", "Studio Monitors");
    showTapped(10, "Vinyl");
    click("Equalizer for Vinyl");
    for (const char* const name :
         {"Output device for Vinyl", "Presets", "Compressor preset for Vinyl"}) {
        EXPECT_EQ(roleOf(the(name)), QAccessible::ButtonMenu) << name;
        EXPECT_TRUE(stateOf(name).hasPopup) << name;
        EXPECT_TRUE(stateOf(name).expandable) << name;
        EXPECT_TRUE(stateOf(name).collapsed) << name;
        act(name, QAccessibleActionInterface::pressAction());
        EXPECT_TRUE(stateOf(name).expanded) << name;
        EXPECT_FALSE(stateOf(name).collapsed) << name;
        key(Qt::Key_Escape);
        EXPECT_TRUE(stateOf(name).collapsed) << name;
    }
}

TEST_F(Roles, WhatUnfoldsSaysWhetherItHas) {
    showTapped(10, "Vinyl");
    for (const char* const name : {"Equalizer for Vinyl", "Advanced"}) {
        EXPECT_TRUE(stateOf(name).expandable) << name;
        EXPECT_FALSE(stateOf(name).expanded) << name;
        act(name, QAccessibleActionInterface::pressAction());
        EXPECT_TRUE(stateOf(name).expanded) << name;
    }
    EXPECT_FALSE(stateOf("Mute Vinyl").expandable);
}

TEST_F(Roles, TheThemesAreRadioButtonsInAGroupOfTheirName) {
    show("welcome/AboutWindow.qml");
    EXPECT_NE(seen(QAccessible::Grouping, "Theme"), nullptr);
    for (const char* const name : {"Classic", "Meridane"})
        EXPECT_EQ(roleOf(the(name)), QAccessible::RadioButton) << name;
    EXPECT_TRUE(stateOf("Classic").checked);
    EXPECT_FALSE(stateOf("Meridane").checked);
    act("Meridane", QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(stateOf("Meridane").checked);
    EXPECT_FALSE(stateOf("Classic").checked);
    EXPECT_EQ(interfaceOf(the("Classic")).parent(), seen(QAccessible::Grouping, "Theme"));
}

TEST_F(Roles, TheApplicationsAreAListWhoseItemsHaveTheirControls) {
    listAndTap(10, "Vinyl");
    listAndTap(11, "Telly");
    showPanel();
    const QAccessibleInterface* const apps = seen(QAccessible::List, "Applications");
    ASSERT_NE(apps, nullptr);
    the("Mute Vinyl").forceActiveFocus(Qt::TabFocusReason);
    const auto all = seenByTools();
    EXPECT_EQ(
        std::ranges::count_if(
            all, [](const QAccessibleInterface* interface) { return interface->state().focused; }),
        1);
    for (const char* const name : {"Vinyl", "Telly"}) {
        const QAccessibleInterface* const row = seen(QAccessible::ListItem, name);
        ASSERT_NE(row, nullptr) << name;
        EXPECT_EQ(row->parent(), apps) << name;
        EXPECT_EQ(interfaceOf(the(QString("Mute ") + name)).parent(), row) << name;
    }
}

TEST_F(Roles, WhatIsOffIsToldAsSuchAndCannotBePressed) {
    showPanel();
    const QString updates = "Check for updates";
    EXPECT_TRUE(stateOf(updates).disabled);
    act(updates, QAccessibleActionInterface::pressAction());
    EXPECT_EQ(updateChecks, 0);
    shell->setCanCheckForUpdates(true);
    settleView();
    EXPECT_FALSE(stateOf(updates).disabled);
    act(updates, QAccessibleActionInterface::pressAction());
    EXPECT_EQ(updateChecks, 1);
}

TEST_F(Roles, AnEntryOfAMenuThatIsOffIsToldAsSuch) {
    addDevice("monitors", "Studio Monitors");
    showTapped(10, "Vinyl");
    click("Output device for Vinyl");
    EXPECT_FALSE(stateOf("Studio Monitors").disabled);
    EXPECT_TRUE(stateOf("System Default").checked);
    QQuickItem& entry = the("Studio Monitors");
    entry.setEnabled(false);
    EXPECT_TRUE(interfaceOf(entry).state().disabled);
    act(entry, QAccessibleActionInterface::pressAction());
    EXPECT_EQ(model->outputDeviceUID(10), std::nullopt);
}

TEST_F(Roles, ASliderThatIsOffTakesNoValue) {
    showTapped(10, "Vinyl");
    QQuickItem& slider = the("Vinyl volume");
    slider.setEnabled(false);
    EXPECT_TRUE(interfaceOf(slider).state().disabled);
    had(interfaceOf(slider).valueInterface()).setCurrentValue(0.5);
    settleView();
    EXPECT_EQ(model->volume(10), 1.0F);
}

TEST_F(Roles, ASliderGoesAStepByItsActions) {
    showTapped(10, "Vinyl");
    act("Vinyl volume", QAccessibleActionInterface::decreaseAction());
    EXPECT_FLOAT_EQ(model->volume(10), 0.99F);
    act("Vinyl volume", QAccessibleActionInterface::increaseAction());
    EXPECT_FLOAT_EQ(model->volume(10), 1.0F);
}

TEST_F(Roles, AMeterAnswersWhenItIsAskedAndTakesNoValue) {
    showTapped(10, "Vinyl");
    QAccessibleInterface* const meter = seen(QAccessible::ProgressBar, "Level of Vinyl");
    ASSERT_NE(meter, nullptr);
    EXPECT_TRUE(meter->state().readOnly);
    QAccessibleValueInterface& value = had(meter->valueInterface());
    EXPECT_EQ(value.minimumValue(), 0.0);
    EXPECT_EQ(value.maximumValue(), 1.0);
    EXPECT_EQ(value.currentValue(), 0.0);
    tapping->levels[10] = {.rms = 0.2F, .peak = 0.4F};
    letMetersRise();
    settleView();
    const double loud = value.currentValue().toDouble();
    EXPECT_GT(loud, 0.1);
    EXPECT_LE(loud, 1.0);
    value.setCurrentValue(0.0);
    EXPECT_EQ(value.currentValue(), loud);
}

TEST_F(Roles, ABarOfGainReductionAnswersInDecibels) {
    showTapped(10, "Vinyl");
    click("Advanced");
    QAccessibleInterface* const bar = seen(QAccessible::ProgressBar, "Mid gain reduction");
    ASSERT_NE(bar, nullptr);
    QAccessibleValueInterface& value = had(bar->valueInterface());
    EXPECT_EQ(value.maximumValue(), 24.0);
    model->compressorGainReduction.set({{10, {0.0F, 6.0F, 0.0F}}});
    itemOf(10).tick();
    settleView();
    EXPECT_NEAR(value.currentValue().toDouble(), 6.0, 0.2);
}

TEST_F(Roles, AToolThatGivesAControlTheKeyboardShowsItsRing) {
    showTapped(10, "Vinyl");
    act("Mute Vinyl", QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(stateOf("Mute Vinyl").focused);
    EXPECT_TRUE(the("Mute Vinyl").property("visualFocus").toBool());
}

TEST_F(Roles, OfTheWelcomeOnlyThePageThatIsSeenIsTold) {
    const std::vector<QString> titles{"Welcome to Orvanta", "How It Works", "Ready to explore"};
    show("welcome/OnboardingWindow.qml");
    for (const QString& present : titles) {
        for (const QString& title : titles)
            EXPECT_EQ(seen(QAccessible::Heading, title) != nullptr, title == present)
                << title.toStdString();
        if (present != titles.back())
            click("Next");
    }
}

} // namespace
} // namespace orvanta::test
