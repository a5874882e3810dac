#include "platform/qt/hotkeys/PortalHotKeyCenter.h"

#include "core/services/HotkeyManager.h"
#include "platform/runloop/VirtualRunLoop.h"
#include "tests/platform/qt/support/EventLoop.h"
#include "tests/platform/qt/support/FakePortal.h"
#include "tests/platform/qt/support/HeardHotKeys.h"
#include "tests/support/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr Seconds kBound(60);
constexpr std::uint32_t kUpArrow = 126;
constexpr std::uint32_t kM = 46;
constexpr std::uint32_t kSuperShift = 768;

const FakePortal::Shortcut kVolumeUp{"key-126-modifiers-768", "Turn the volume up",
                                     "LOGO+SHIFT+Up"};
const FakePortal::Shortcut kMute{"key-46-modifiers-768", "Super+Shift+M", "LOGO+SHIFT+m"};

class PortalHotKeys : public testing::Test {
protected:
    void startPortal() { portal = std::make_unique<FakePortal>(bus); }

    void startProgram() {
        center = std::make_unique<PortalHotKeyCenter>(
            *connection, log, HotKeyDescriptions{{{kUpArrow, kSuperShift}, "Turn the volume up"}});
        heard = std::make_unique<HeardHotKeys>(*center);
    }

    void endProgram() {
        heard.reset();
        center.reset();
    }

    /// Both, with volume up as 1 and mute as 2.
    void start() {
        startPortal();
        startProgram();
        addBoth();
    }

    void addBoth() {
        EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), noErr);
        EXPECT_EQ(heard->add(kM, kSuperShift, 2), noErr);
    }

    [[nodiscard]] bool isBound(std::size_t count) const {
        return eventuallyInEventLoop(
            kBound, [&] { return portal->openSessions() == 1 && portal->bound().size() == count; });
    }

    [[nodiscard]] bool worksFor(const FakePortal::Shortcut& shortcut, std::uint32_t id) {
        heard->heard.clear();
        portal->activate(shortcut.id);
        return heard->hearsLast(id);
    }

    /// The one line that is logged in the end.
    std::string complaint() {
        EXPECT_TRUE(eventuallyInEventLoop(kBound, [&] { return !log.messages().empty(); }));
        EXPECT_TRUE(eventLoopComesToRest());
        const auto messages = log.messages();
        EXPECT_EQ(messages.size(), 1U);
        if (messages.empty())
            return {};
        EXPECT_EQ(messages[0].level, LogLevel::error);
        EXPECT_EQ(messages[0].subsystem, "com.meridane.orvanta");
        EXPECT_EQ(messages[0].category, "hotkeys");
        return messages[0].text;
    }

    PrivateBus bus;
    BusConnection connection{bus};
    RecordingLog log;
    std::unique_ptr<FakePortal> portal;
    std::unique_ptr<PortalHotKeyCenter> center;
    std::unique_ptr<HeardHotKeys> heard;
};

TEST_F(PortalHotKeys, AreBoundTogetherWithTheirWords) {
    start();
    EXPECT_TRUE(isBound(2));
    EXPECT_THAT(portal->bound(), ElementsAre(kVolumeUp, kMute));
    EXPECT_TRUE(eventLoopComesToRest());
    ASSERT_THAT(portal->sessions, SizeIs(1));
    EXPECT_THAT(portal->sessions[0].bindings, SizeIs(1));
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(PortalHotKeys, ReachTheProgram) {
    start();
    ASSERT_TRUE(isBound(2));
    portal->activate(kVolumeUp.id);
    portal->activate(kVolumeUp.id);
    portal->activate(kMute.id);
    EXPECT_TRUE(heard->hearsLast(2));
    EXPECT_THAT(heard->heard, ElementsAre(1, 1, 2));
}

TEST_F(PortalHotKeys, RunTheManagersActions) {
    startPortal();
    startProgram();
    VirtualRunLoop runLoop;
    std::vector<std::string> said;
    const auto saying = [&](const char* word) {
        return [&said, word] {
            said.emplace_back(word);
        };
    };
    auto manager = HotkeyManager::create(*center, runLoop, log);
    manager->registerDefaults(saying("up"), saying("down"), saying("mute"));
    ASSERT_TRUE(isBound(3));
    for (const auto& shortcut : portal->bound())
        portal->activate(shortcut.id);
    EXPECT_TRUE(eventuallyInEventLoop(kBound, [&] {
        runLoop.runUntilIdle();
        return said.size() == 3;
    }));
    EXPECT_THAT(said, ElementsAre("up", "down", "mute"));
    manager.reset();
    HotkeyManager::releaseCurrent();
}

TEST_F(PortalHotKeys, HaveTheSameIdsInEveryRun) {
    start();
    ASSERT_TRUE(isBound(2));
    const auto before = portal->bound();
    endProgram();
    ASSERT_TRUE(eventuallyInEventLoop(kBound, [&] { return portal->openSessions() == 0; }));
    startProgram();
    // In another order, and so with other registrations.
    EXPECT_EQ(heard->add(kM, kSuperShift, 7), noErr);
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 8), noErr);
    ASSERT_TRUE(isBound(2));
    EXPECT_THAT(portal->bound(), ElementsAre(before[1], before[0]));
    EXPECT_TRUE(worksFor(kMute, 7));
}

TEST_F(PortalHotKeys, GoWithTheProgram) {
    start();
    ASSERT_TRUE(isBound(2));
    endProgram();
    EXPECT_TRUE(eventuallyInEventLoop(kBound, [&] { return portal->openSessions() == 0; }));
}

TEST_F(PortalHotKeys, AreBoundInANewSessionWhenTheyChange) {
    start();
    ASSERT_TRUE(isBound(2));
    heard->remove(1);
    ASSERT_TRUE(isBound(1));
    EXPECT_THAT(portal->sessions, SizeIs(2));
    EXPECT_THAT(portal->bound(), ElementsAre(kMute));
    EXPECT_TRUE(worksFor(kMute, 2));
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 3), noErr);
    ASSERT_TRUE(isBound(2));
    EXPECT_TRUE(worksFor(kVolumeUp, 3));
}

TEST_F(PortalHotKeys, NeedNoSessionWhenThereAreNone) {
    start();
    ASSERT_TRUE(isBound(2));
    heard->remove(1);
    heard->remove(2);
    EXPECT_TRUE(eventuallyInEventLoop(kBound, [&] { return portal->openSessions() == 0; }));
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_THAT(portal->sessions, SizeIs(1));
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(PortalHotKeys, ThatWentBeforeTheSessionCameAreNotBound) {
    start();
    ASSERT_TRUE(eventuallyInEventLoop(kBound, [&] { return !portal->sessions.empty(); }));
    heard->remove(1);
    ASSERT_TRUE(isBound(1));
    EXPECT_THAT(portal->bound(), ElementsAre(kMute));
}

TEST_F(PortalHotKeys, GiveTheQuestionUpThatAChangeOvertakes) {
    startPortal();
    portal->isUndecided = true;
    startProgram();
    addBoth();
    ASSERT_TRUE(isBound(2));
    portal->isUndecided = false;
    heard->remove(1);
    ASSERT_TRUE(isBound(1));
    EXPECT_TRUE(eventuallyInEventLoop(kBound, [&] { return portal->closedRequests == 1; }));
    EXPECT_TRUE(worksFor(kMute, 2));
}

TEST_F(PortalHotKeys, OfAnotherSessionAreNotHeard) {
    start();
    ASSERT_TRUE(isBound(2));
    portal->activate(kVolumeUp.id, "/org/freedesktop/portal/desktop/session/1_99/other");
    portal->activate("key-1-modifiers-1");
    EXPECT_TRUE(worksFor(kMute, 2));
    EXPECT_THAT(heard->heard, ElementsAre(2));
}

TEST_F(PortalHotKeys, OfAnotherProgramOnTheBusAreNotHeard) {
    start();
    ASSERT_TRUE(isBound(2));
    BusConnection stranger(bus);
    QDBusMessage signal = QDBusMessage::createTargetedSignal(
        connection->baseService(), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.GlobalShortcuts"), QStringLiteral("Activated"));
    signal << QVariant::fromValue(
                  QDBusObjectPath(QString::fromStdString(portal->sessions.back().path)))
           << QString::fromStdString(kVolumeUp.id) << qulonglong{0} << QVariantMap();
    ASSERT_TRUE(stranger->send(signal));
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_TRUE(worksFor(kMute, 2));
    EXPECT_THAT(heard->heard, ElementsAre(2));
}

TEST_F(PortalHotKeys, WorkWithAPortalThatAnswersBeforeItsCallsReturn) {
    startPortal();
    portal->answersBeforeItReturns = true;
    startProgram();
    addBoth();
    ASSERT_TRUE(isBound(2));
    EXPECT_TRUE(worksFor(kVolumeUp, 1));
}

TEST_F(PortalHotKeys, WorkWithAPortalThatTellsSessionsAsPaths) {
    startPortal();
    portal->tellsSessionsAsPaths = true;
    startProgram();
    addBoth();
    ASSERT_TRUE(isBound(2));
    EXPECT_TRUE(worksFor(kVolumeUp, 1));
}

TEST_F(PortalHotKeys, AreMissedInOneLineWithoutAPortal) {
    startProgram();
    addBoth();
    EXPECT_THAT(complaint(), StartsWith("No global shortcuts: "));
}

TEST_F(PortalHotKeys, AreMissedInOneLineWithoutABus) {
    QDBusConnection none(QStringLiteral("no bus at all"));
    center = std::make_unique<PortalHotKeyCenter>(none, log);
    heard = std::make_unique<HeardHotKeys>(*center);
    addBoth();
    EXPECT_THAT(complaint(), StartsWith("No global shortcuts: "));
}

TEST_F(PortalHotKeys, AreMissedInOneLineWithAPortalThatHasNone) {
    startPortal();
    portal->hasGlobalShortcuts = false;
    startProgram();
    addBoth();
    EXPECT_EQ(complaint(), "No global shortcuts: No such interface");
}

TEST_F(PortalHotKeys, AreMissedInOneLineWhenTheCallIsRefused) {
    startPortal();
    portal->refusesCalls = true;
    startProgram();
    addBoth();
    EXPECT_EQ(complaint(), "No global shortcuts: Not for you");
}

TEST_F(PortalHotKeys, AreMissedInOneLineWhenTheSessionIsRefused) {
    startPortal();
    portal->answerToSession = 2;
    startProgram();
    addBoth();
    EXPECT_EQ(complaint(), "No global shortcuts: the request was ended");
}

TEST_F(PortalHotKeys, AreMissedInOneLineWhenTheUserDeclines) {
    startPortal();
    portal->answerToBinding = 1;
    startProgram();
    addBoth();
    EXPECT_EQ(complaint(), "No global shortcuts: the user or the desktop declined");
    EXPECT_THAT(portal->sessions, SizeIs(1));
    EXPECT_EQ(portal->openSessions(), 0);
}

TEST_F(PortalHotKeys, ComeWithAPortalThatComesLater) {
    startProgram();
    addBoth();
    complaint();
    log.clear();
    startPortal();
    ASSERT_TRUE(isBound(2));
    EXPECT_TRUE(worksFor(kVolumeUp, 1));
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(PortalHotKeys, AreBoundAnewWhenThePortalRestarts) {
    start();
    ASSERT_TRUE(isBound(2));
    for (int restart = 0; restart < 3; ++restart) {
        portal.reset();
        startPortal();
        ASSERT_TRUE(isBound(2));
        EXPECT_TRUE(worksFor(kVolumeUp, 1));
        EXPECT_THAT(portal->sessions, SizeIs(1));
    }
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(PortalHotKeys, AreBoundAnewWhenThePortalRestartsWhileItAsksTheUser) {
    startPortal();
    portal->isUndecided = true;
    startProgram();
    addBoth();
    ASSERT_TRUE(isBound(2));
    portal.reset();
    startPortal();
    ASSERT_TRUE(isBound(2));
    EXPECT_TRUE(worksFor(kVolumeUp, 1));
}

TEST_F(PortalHotKeys, AreLostInOneLineWhenTheDesktopEndsTheSession) {
    start();
    ASSERT_TRUE(isBound(2));
    portal->endSession();
    EXPECT_EQ(complaint(), "Lost the global shortcuts: the desktop ended their session");
    EXPECT_THAT(portal->sessions, SizeIs(1));
    EXPECT_EQ(heard->add(8, kSuperShift, 3), noErr);
    ASSERT_TRUE(isBound(3));
    EXPECT_TRUE(worksFor(kVolumeUp, 1));
}

TEST_F(PortalHotKeys, AreRefusedWhenNoKeyboardHasThemOrTheProgramHasThemAlready) {
    startPortal();
    startProgram();
    EXPECT_EQ(heard->add(127, kSuperShift, 1), eventHotKeyInvalidErr);
    EXPECT_EQ(heard->add(kUpArrow, 1, 1), eventHotKeyInvalidErr);
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), noErr);
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 2), eventHotKeyExistsErr);
    ASSERT_TRUE(isBound(1));
    heard->remove(1);
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 2), noErr);
    ASSERT_TRUE(eventuallyInEventLoop(kBound, [&] { return portal->sessions.size() == 2; }));
    ASSERT_TRUE(isBound(1));
    EXPECT_TRUE(worksFor(kVolumeUp, 2));
}

} // namespace
} // namespace orvanta::test
