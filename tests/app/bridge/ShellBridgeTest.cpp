#include "app/bridge/ShellBridge.h"

#include "platform/runloop/VirtualRunLoop.h"
#include "tests/app/shell/FakeWindows.h"
#include "tests/support/MemoryUserDefaults.h"
#include "tests/support/ScriptedWallClock.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <fstream>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class ShellBridgeTest : public testing::Test {
protected:
    void leaveReport(const std::string& text) {
        std::ofstream(reporter_.logDir() / "crash-2026-11-22T10:00:00Z.log") << text;
    }

    VirtualRunLoop mainRunLoop_;
    MemoryUserDefaults defaults_;
    FakeWindows windows_;
    OnboardingTrigger onboarding_{defaults_, windows_, mainRunLoop_};
    ScriptedWallClock clock_;
    TemporaryDirectory home_;
    CrashReporter reporter_{{.homeDirectory = home_.path()}, clock_};
    int checks_ = 0;
    int quits_ = 0;
    std::vector<std::string> urls_;
    ShellBridge shell_{{.shortVersion = "1.2.3", .version = "45"},
                       windows_,
                       onboarding_,
                       reporter_,
                       {.checkForUpdates = [this] { ++checks_; },
                        .openURL = [this](const std::string& url) { urls_.push_back(url); },
                        .quit =
                            [this] {
                                ++quits_;
                            }}};
};

TEST_F(ShellBridgeTest, SaysWhichVersionItIs) {
    EXPECT_EQ(shell_.versionText(), "v1.2.3");
    EXPECT_EQ(shell_.longVersionText(), "Version 1.2.3 (45)");
}

TEST_F(ShellBridgeTest, ClosesThePanelBeforeItOpensAWindow) {
    shell_.openFromPanel("about");
    EXPECT_THAT(windows_.calls, ElementsAre("close key window", "open about", "activate"));
    windows_.calls.clear();
    shell_.openFromPanel("command-center");
    EXPECT_THAT(windows_.calls, ElementsAre("close key window", "open command-center", "activate"));
}

TEST_F(ShellBridgeTest, HasNoCrashReportsUntilItLooks) {
    QSignalSpy changes(&shell_, &ShellBridge::hasCrashReportsChanged);
    shell_.lookForCrashReports();
    EXPECT_FALSE(shell_.hasCrashReports());
    EXPECT_EQ(changes.count(), 0);
    leaveReport("it broke");
    EXPECT_FALSE(shell_.hasCrashReports());
    shell_.lookForCrashReports();
    EXPECT_TRUE(shell_.hasCrashReports());
    shell_.lookForCrashReports();
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(ShellBridgeTest, MailsACrashReportAndPutsItAside) {
    leaveReport("it-broke-here");
    shell_.lookForCrashReports();
    shell_.sendCrashReport();
    ASSERT_EQ(urls_.size(), 1U);
    EXPECT_THAT(urls_.front(), StartsWith("mailto:support@orvanta.meridane.com"));
    EXPECT_THAT(urls_.front(), HasSubstr("it-broke-here"));
    EXPECT_FALSE(shell_.hasCrashReports());
    EXPECT_FALSE(reporter_.hasUnsentReports());
    shell_.sendCrashReport();
    EXPECT_EQ(urls_.size(), 1U) << "there is nothing left to mail";
}

TEST_F(ShellBridgeTest, SaysWhetherUpdatesCanBeLookedFor) {
    QSignalSpy changes(&shell_, &ShellBridge::canCheckForUpdatesChanged);
    EXPECT_FALSE(shell_.canCheckForUpdates());
    shell_.setCanCheckForUpdates(false);
    EXPECT_EQ(changes.count(), 0);
    shell_.setCanCheckForUpdates(true);
    EXPECT_TRUE(shell_.canCheckForUpdates());
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(ShellBridgeTest, DoesWhatItIsAskedFor) {
    shell_.checkForUpdates();
    EXPECT_EQ(checks_, 1);
    shell_.quit();
    EXPECT_EQ(quits_, 1);
    EXPECT_FALSE(onboarding_.hasCompleted());
    shell_.completeOnboarding();
    EXPECT_TRUE(onboarding_.hasCompleted());
    EXPECT_THAT(windows_.calls, IsEmpty());
}

} // namespace
} // namespace orvanta::test
