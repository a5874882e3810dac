#include "app/shell/AppDelegate.h"
#include "app/shell/ConsoleHotKey.h"
#include "app/shell/LaunchAtLogin.h"
#include "app/shell/OnboardingTrigger.h"
#include "core/model/MixerViewModel.h"
#include "platform/memory/InMemoryUserDefaults.h"
#include "platform/runloop/InProcessNotificationCenter.h"
#include "platform/runloop/VirtualRunLoop.h"
#include "tests/app/shell/FakeWindows.h"
#include "tests/support/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Shell : public testing::Test {
protected:
    VirtualRunLoop mainRunLoop_;
    FakeWindows windows_;
    InMemoryUserDefaults defaults_;
    InProcessNotificationCenter notifications_;
};

TEST_F(Shell, ClosesTheNamedWindowsATenthOfASecondAfterLaunchAndLeavesThePanel) {
    windows_.show({"Welcome to Orvanta", "Orvanta", "About Orvanta", "Sound Command Center"});
    AppDelegate delegate(windows_, mainRunLoop_);
    delegate.applicationDidFinishLaunching();
    mainRunLoop_.advance(Seconds(0.099));
    EXPECT_THAT(windows_.calls, IsEmpty());
    mainRunLoop_.advance(Seconds(0.001));
    EXPECT_THAT(windows_.titles(), ElementsAre("Orvanta"));
    EXPECT_EQ(windows_.calls.size(), 3U);
}

TEST_F(Shell, EndsAtOnceWhenItIsAsked) {
    EXPECT_EQ(AppDelegate::applicationShouldTerminate(), 1);
}

TEST_F(Shell, WelcomesANewUserHalfASecondAfterThePanel) {
    OnboardingTrigger trigger(defaults_, windows_, mainRunLoop_);
    trigger.panelAppeared();
    mainRunLoop_.advance(Seconds(0.499));
    EXPECT_THAT(windows_.calls, IsEmpty());
    mainRunLoop_.advance(Seconds(0.001));
    EXPECT_THAT(windows_.calls, ElementsAre("open onboarding", "activate"));
}

TEST_F(Shell, WelcomesOnceARun) {
    OnboardingTrigger trigger(defaults_, windows_, mainRunLoop_);
    trigger.panelAppeared();
    trigger.panelAppeared();
    mainRunLoop_.advance(Seconds(10.0));
    EXPECT_EQ(windows_.calls.size(), 2U);
}

TEST_F(Shell, WelcomesNobodyWhoHasBeenThroughThePages) {
    OnboardingTrigger before(defaults_, windows_, mainRunLoop_);
    before.complete();
    EXPECT_TRUE(defaults_.boolean("com.meridane.orvanta.hasCompletedOnboarding"));
    OnboardingTrigger trigger(defaults_, windows_, mainRunLoop_);
    trigger.panelAppeared();
    mainRunLoop_.advance(Seconds(10.0));
    EXPECT_THAT(windows_.calls, IsEmpty());
}

TEST_F(Shell, WelcomesAgainInTheNextRunWhoeverHasLeftThePagesEarly) {
    for (int run = 0; run < 2; ++run) {
        OnboardingTrigger trigger(defaults_, windows_, mainRunLoop_);
        trigger.panelAppeared();
        mainRunLoop_.advance(Seconds(1.0));
    }
    EXPECT_EQ(windows_.calls.size(), 4U);
}

TEST_F(Shell, ShowsTheConsoleAtEveryPressOfItsHotKey) {
    const ConsoleHotKey hotKey(notifications_, windows_);
    for (int press = 0; press < 2; ++press) {
        windows_.calls.clear();
        notifications_.post("com.meridane.orvanta.toggleCommandCenter");
        EXPECT_THAT(windows_.calls, ElementsAre("open command-center", "activate", "activate",
                                                "front Sound Command Center"));
    }
}

/// Registers as it is told.
class ScriptedLoginItem final : public LoginItem {
public:
    [[nodiscard]] bool isRegistered() const override { return isOn; }

    std::optional<std::string> registerItem() override { return change(true); }

    std::optional<std::string> unregisterItem() override { return change(false); }

    bool isOn = false;
    std::optional<std::string> error;

private:
    std::optional<std::string> change(bool on) {
        if (!error)
            isOn = on;
        return error;
    }
};

TEST_F(Shell, LaunchesAtLoginOrNoLonger) {
    ScriptedLoginItem item;
    RecordingLog log;
    LaunchAtLogin launch(item, log);
    launch.set(true);
    EXPECT_TRUE(launch.isOn());
    launch.set(false);
    EXPECT_FALSE(launch.isOn());
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(Shell, LogsWhyItCannotLaunchAtLogin) {
    ScriptedLoginItem item;
    item.error = "Read-only file system";
    RecordingLog log;
    LaunchAtLogin launch(item, log);
    launch.set(true);
    ASSERT_EQ(log.messages().size(), 1U);
    const auto entry = log.messages().front();
    EXPECT_EQ(entry.level, LogLevel::error);
    EXPECT_EQ(entry.subsystem, "com.meridane.orvanta");
    EXPECT_EQ(entry.category, "appSetup");
    EXPECT_EQ(entry.text, "Launch at login error: Read-only file system");
}

} // namespace
} // namespace orvanta::test
