#include "tests/app/support/ViewTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace orvanta::test {
namespace {

using testing::IsEmpty;

class WelcomeWindow : public ViewTest {
protected:
    void SetUp() override { show("welcome/OnboardingWindow.qml"); }

    [[nodiscard]] bool isOnPage(int page) const {
        return std::ranges::any_of(visibleItems(), [&](QQuickItem* item) {
            return nameOf(*item) == QString("Page %1 of 3").arg(page);
        });
    }

    /// Whether it stands within the window, and not on a page beside it.
    [[nodiscard]] bool isInWindow(const QString& text) const {
        return std::ranges::any_of(visibleItems(), [&](QQuickItem* item) {
            return item->property("text").toString() == text &&
                   QRectF(QPointF(), window->size())
                       .contains(item->mapRectToScene(item->boundingRect()));
        });
    }
};

TEST_F(WelcomeWindow, HasAFixedSizeAndItsTitle) {
    EXPECT_EQ(window->title(), "Welcome to Orvanta");
    EXPECT_EQ(window->size(), QSize(460, 520));
    EXPECT_EQ(window->minimumSize(), window->size());
    EXPECT_EQ(window->maximumSize(), window->size());
}

TEST_F(WelcomeWindow, GoesThroughThreePagesAndIsCompleteAtTheirEnd) {
    EXPECT_TRUE(isOnPage(1));
    for (const char* const text :
         {"Welcome to Orvanta", "The audio mixer macOS should have built in.",
          "Control each app's volume independently",
          "Route apps to different speakers & headphones", "EQ, compressor, stereo effects & more"})
        EXPECT_TRUE(isInWindow(text)) << text;
    EXPECT_FALSE(isInWindow("How It Works"));
    click("Next");
    EXPECT_TRUE(isOnPage(2));
    for (const char* const text :
         {"How It Works", "1", "Click the speaker icon",
          "Orvanta lives in your menu bar — always one click away", "2", "Play audio in any app",
          "Apps appear automatically when they produce sound", "3", "Click an app to take control",
          "Adjust volume, apply EQ, route to any output device",
          "macOS will ask for audio capture permission — this is required for per-app control."})
        EXPECT_TRUE(isInWindow(text)) << text;
    click("Next");
    EXPECT_TRUE(isOnPage(3));
    EXPECT_TRUE(isInWindow("Ready to explore"));
    EXPECT_EQ(control("Next"), nullptr);
    EXPECT_FALSE(onboarding.hasCompleted());
    EXPECT_TRUE(window->isVisible());
    click("Get Started");
    EXPECT_TRUE(onboarding.hasCompleted());
    EXPECT_FALSE(window->isVisible());
}

TEST_F(WelcomeWindow, GoesOnByKey) {
    key(Qt::Key_Return);
    EXPECT_TRUE(isOnPage(2));
    key(Qt::Key_Space);
    EXPECT_TRUE(isOnPage(3));
    EXPECT_FALSE(onboarding.hasCompleted());
    key(Qt::Key_Return);
    EXPECT_TRUE(onboarding.hasCompleted());
}

TEST_F(WelcomeWindow, StaysIncompleteWhenItIsClosed) {
    click("Next");
    click("Close");
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(onboarding.hasCompleted());
}

TEST_F(WelcomeWindow, StaysIncompleteWhenItIsEscapedFromOnItsLastPage) {
    click("Next");
    click("Next");
    key(Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(onboarding.hasCompleted());
}

class AboutWindow : public ViewTest {
protected:
    void leaveCrashReport() {
        std::ofstream(crashReporter.logDir() / "crash-2026-11-22T10:00:00Z.log") << "it broke";
    }

    void showAbout() { show("welcome/AboutWindow.qml"); }
};

TEST_F(AboutWindow, SaysWhatItIs) {
    showAbout();
    EXPECT_EQ(window->title(), "About Orvanta");
    for (const char* const text : {"Per-App Audio Mixer & Router", "Version 1.0.0 (1)", "THEME",
                                   "Theme", "Requires", "macOS Sonoma+", "Check for Updates"})
        EXPECT_TRUE(says(text)) << text;
    EXPECT_TRUE(std::ranges::any_of(visibleItems(), [](QQuickItem* item) {
        return roleOf(*item) == QAccessible::Heading && nameOf(*item) == "Orvanta";
    }));
}

TEST_F(AboutWindow, PicksTheTheme) {
    showAbout();
    EXPECT_TRUE(isChecked(the("Classic")));
    click("Meridane");
    EXPECT_EQ(themes.choice.get(), ThemeChoice::meridane);
    EXPECT_TRUE(isChecked(the("Meridane")));
    EXPECT_FALSE(isChecked(the("Classic")));
    key(Qt::Key_Left);
    EXPECT_EQ(themes.choice.get(), ThemeChoice::classic);
    EXPECT_EQ(nameOf(*window->activeFocusItem()), "Classic");
}

TEST_F(AboutWindow, ShowsThatUpdatesCannotBeLookedFor) {
    showAbout();
    expectUpdatesAreLookedForWhereTheyCanBe();
}

TEST_F(AboutWindow, OffersToSendCrashReportsOnlyWhereThereAreAny) {
    showAbout();
    EXPECT_EQ(control("Send Crash Report"), nullptr);
    const int height = window->height();
    view.reset();
    leaveCrashReport();
    showAbout();
    EXPECT_GT(window->height(), height);
    EXPECT_THAT(openedURLs, IsEmpty());
    click("Send Crash Report");
    EXPECT_EQ(openedURLs.size(), 1U);
    EXPECT_EQ(control("Send Crash Report"), nullptr) << "they are put aside";
    EXPECT_FALSE(crashReporter.hasUnsentReports());
    EXPECT_EQ(window->height(), height);
}

TEST_F(AboutWindow, ClosesByItsCrossAndByEscape) {
    showAbout();
    click("Close");
    EXPECT_FALSE(window->isVisible());
    showAbout();
    key(Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
}

/// Every window, in turn.
class SmallWindow : public ViewTest, public testing::WithParamInterface<const char*> {};

TEST_P(SmallWindow, HasARoleAndANameForEveryControlAndLetsTabReachIt) {
    std::ofstream(crashReporter.logDir() / "crash-2026-11-22T10:00:00Z.log") << "it broke";
    shell->setCanCheckForUpdates(true);
    show(GetParam());
    std::vector<QQuickItem*> toReach;
    for (QQuickItem* const item : visibleItems()) {
        if (!item->activeFocusOnTab())
            continue;
        EXPECT_FALSE(nameOf(*item).isEmpty()) << item->metaObject()->className();
        EXPECT_NE(roleOf(*item), QAccessible::Client) << item->metaObject()->className();
        toReach.push_back(item);
    }
    ASSERT_FALSE(toReach.empty());
    std::vector<QQuickItem*> reached;
    toReach.front()->forceActiveFocus(Qt::TabFocusReason);
    for (std::size_t count = 0; count < toReach.size(); ++count) {
        reached.push_back(window->activeFocusItem());
        key(Qt::Key_Tab);
    }
    EXPECT_THAT(reached, testing::UnorderedElementsAreArray(toReach));
}

INSTANTIATE_TEST_SUITE_P(All, SmallWindow,
                         testing::Values("welcome/AboutWindow.qml",
                                         "welcome/OnboardingWindow.qml"));

class PanelWindow : public ViewTest {
protected:
    void SetUp() override { show("shell/PopoverWithHotkey.qml"); }
};

TEST_F(PanelWindow, HasTheSizeOfThePanelAndGoesByEscape) {
    EXPECT_EQ(window->size(), QSize(360, 520));
    EXPECT_TRUE(says("Mute All"));
    window->setProperty("isFramed", false);
    key(Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(PanelWindow, IsOnlyMinimisedByEscapeWhereNothingElseBringsItBack) {
    key(Qt::Key_Escape);
    EXPECT_EQ(window->visibility(), QWindow::Minimized);
}

TEST_F(PanelWindow, HasTheKeyboardFromTheFirst) {
    key(Qt::Key_Tab);
    EXPECT_EQ(nameOf(*window->activeFocusItem()), "Auto-tap");
}

class ConsoleWindow : public ViewTest {};

TEST_F(ConsoleWindow, HasItsTitleAndItsSizes) {
    show("shell/CommandCenterWindowHost.qml");
    EXPECT_EQ(window->title(), "Sound Command Center");
    EXPECT_EQ(window->size(), QSize(960, 640));
    EXPECT_EQ(window->minimumSize(), QSize(860, 568));
}

} // namespace
} // namespace orvanta::test
