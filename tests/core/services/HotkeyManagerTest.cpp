#include "core/services/HotkeyManager.h"

#include "platform/runloop/VirtualRunLoop.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/ScriptedHotKeyCenter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Key = HotkeyManager::KeyCode;

constexpr std::uint32_t kCmdShift = HotkeyManager::cmdShift;

class Hotkeys : public testing::Test {
protected:
    ~Hotkeys() override { HotkeyManager::releaseCurrent(); }

    std::shared_ptr<HotkeyManager> newManager() {
        return HotkeyManager::create(center, runLoop, log);
    }

    /// Registered on command-shift-C; says `word` when pressed.
    std::uint32_t registerSaying(const std::string& word) {
        return manager->registerHotkey(HotkeyManager::rawValue(Key::c), kCmdShift, saying(word));
    }

    Task saying(const std::string& word) {
        return [this, word] {
            said.push_back(word);
        };
    }

    /// After the main queue's next turns.
    std::vector<std::string> heard() {
        runLoop.runUntilIdle();
        return said;
    }

    ScriptedHotKeyCenter center;
    VirtualRunLoop runLoop;
    RecordingLog log;
    std::shared_ptr<HotkeyManager> manager = newManager();
    std::vector<std::string> said;
};

TEST_F(Hotkeys, AreNumberedFromOne) {
    EXPECT_EQ(registerSaying("first"), 1U);
    EXPECT_EQ(registerSaying("second"), 2U);
}

TEST_F(Hotkeys, ThatFailUseTheirIdUp) {
    EXPECT_EQ(registerSaying("first"), 1U);
    center.statusOfNextRegistration = eventHotKeyExistsErr;
    EXPECT_EQ(registerSaying("taken"), 2U);
    EXPECT_EQ(registerSaying("third"), 3U);
}

TEST_F(Hotkeys, AreRegisteredUnderTheProgramsSignature) {
    manager->registerHotkey(126, kCmdShift, saying("up"));
    ASSERT_EQ(center.registrations.size(), 1U);
    EXPECT_EQ(center.registrations[0].keyCode, 126U);
    EXPECT_EQ(center.registrations[0].modifiers, 768U);
    EXPECT_EQ(center.registrations[0].id.signature, 0x4F525654U);
    EXPECT_EQ(center.registrations[0].id.id, 1U);
}

TEST_F(Hotkeys, AreLogged) {
    registerSaying("first");
    ASSERT_EQ(log.messages().size(), 1U);
    const auto message = log.messages()[0];
    EXPECT_EQ(message.level, LogLevel::info);
    EXPECT_EQ(message.subsystem, "com.meridane.orvanta");
    EXPECT_EQ(message.category, "hotkeys");
    EXPECT_EQ(message.text, "Registered hotkey 1: keyCode=8 modifiers=768");
}

TEST_F(Hotkeys, ThatFailAreLoggedWithTheStatusAndNothingElse) {
    center.statusOfNextRegistration = -9878;
    registerSaying("taken");
    ASSERT_EQ(log.messages().size(), 1U);
    const auto message = log.messages()[0];
    EXPECT_EQ(message.level, LogLevel::error);
    EXPECT_EQ(message.subsystem, "com.meridane.orvanta");
    EXPECT_EQ(message.category, "hotkeys");
    EXPECT_EQ(message.text, "Failed to register hotkey: -9878");
}

TEST_F(Hotkeys, ThatFailAreNeverHeardOfAgain) {
    center.statusOfNextRegistration = eventHotKeyExistsErr;
    const auto id = registerSaying("taken");
    center.calls.clear();
    EXPECT_EQ(center.press(id), eventNotHandledErr);
    manager->unregister(id);
    manager->unregisterAll();
    EXPECT_THAT(center.calls, IsEmpty());
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Hotkeys, RunTheirActionOnTheMainQueueOncePerPress) {
    registerSaying("first");
    registerSaying("second");
    EXPECT_EQ(center.press(2), noErr);
    EXPECT_THAT(said, IsEmpty());
    EXPECT_THAT(heard(), ElementsAre("second"));
    EXPECT_EQ(center.press(1), noErr);
    EXPECT_EQ(center.press(1), noErr);
    EXPECT_THAT(heard(), ElementsAre("second", "first", "first"));
}

TEST_F(Hotkeys, LeaveAPressWithoutAnEventUnhandled) {
    registerSaying("first");
    EXPECT_EQ(center.deliver(nullptr), eventNotHandledErr);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Hotkeys, AnswerThePressThatDoesNotTellItsIdWithWhyItDoesNot) {
    registerSaying("first");
    const ScriptedHotKeyEvent unreadable(OSStatus{-9870});
    EXPECT_EQ(center.deliver(&unreadable), -9870);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Hotkeys, LeaveAnUnknownIdUnhandled) {
    registerSaying("first");
    EXPECT_EQ(center.press(2), eventNotHandledErr);
    EXPECT_EQ(center.press(0U), eventNotHandledErr);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Hotkeys, GoByTheIdAndNotByTheSignature) {
    registerSaying("first");
    EXPECT_EQ(center.press({.signature = fourCharCode("????"), .id = 1}), noErr);
    EXPECT_THAT(heard(), ElementsAre("first"));
}

TEST_F(Hotkeys, AreReleasedByTheirId) {
    const auto first = registerSaying("first");
    const auto second = registerSaying("second");
    center.calls.clear();
    manager->unregister(first);
    EXPECT_THAT(center.calls, ElementsAre("unregister 1"));
    EXPECT_EQ(center.press(first), eventNotHandledErr);
    EXPECT_EQ(center.press(second), noErr);
    EXPECT_THAT(heard(), ElementsAre("second"));
}

TEST_F(Hotkeys, ThatWereNeverRegisteredAreNotReleased) {
    registerSaying("first");
    center.calls.clear();
    manager->unregister(7);
    EXPECT_THAT(center.calls, IsEmpty());
    EXPECT_EQ(center.press(1), noErr);
}

TEST_F(Hotkeys, AreReleasedOnce) {
    const auto id = registerSaying("first");
    manager->unregister(id);
    center.calls.clear();
    manager->unregister(id);
    EXPECT_THAT(center.calls, IsEmpty());
}

TEST_F(Hotkeys, ThatTheDesktopGaveNoReferenceForAreForgottenOnly) {
    center.givesReferences = false;
    const auto first = registerSaying("first");
    registerSaying("second");
    EXPECT_EQ(center.press(first), noErr);
    center.calls.clear();
    manager->unregister(first);
    manager->unregisterAll();
    EXPECT_THAT(center.calls, IsEmpty());
    EXPECT_EQ(center.press(first), eventNotHandledErr);
}

TEST_F(Hotkeys, StillRunAnActionThatWasQueuedBeforeTheyWereReleased) {
    const auto id = registerSaying("first");
    center.press(id);
    manager->unregister(id);
    EXPECT_THAT(heard(), ElementsAre("first"));
}

TEST_F(Hotkeys, GoOnCountingAfterAllWereReleased) {
    registerSaying("first");
    registerSaying("second");
    center.calls.clear();
    manager->unregisterAll();
    EXPECT_THAT(center.calls, ElementsAre("unregister 1", "unregister 2"));
    EXPECT_EQ(center.press(1), eventNotHandledErr);
    EXPECT_EQ(registerSaying("third"), 3U);
    EXPECT_EQ(center.press(3), noErr);
    EXPECT_THAT(heard(), ElementsAre("third"));
}

TEST_F(Hotkeys, OfTheVolumeAreUpDownAndMInThisOrder) {
    center.calls.clear();
    manager->registerDefaults(saying("up"), saying("down"), saying("mute"));
    EXPECT_THAT(center.calls, ElementsAre("register 126 with 768 as 1", //
                                          "register 125 with 768 as 2", //
                                          "register 46 with 768 as 3"));
    for (const std::uint32_t id : {1U, 2U, 3U})
        center.press(id);
    EXPECT_THAT(heard(), ElementsAre("up", "down", "mute"));
}

TEST_F(Hotkeys, MayBeChangedByTheirOwnActions) {
    std::uint32_t id = 0;
    id = manager->registerHotkey(8, kCmdShift, [&] {
        manager->unregister(id);
        registerSaying("next");
    });
    center.press(id);
    heard();
    EXPECT_EQ(center.press(id), eventNotHandledErr);
    EXPECT_EQ(center.press(id + 1), noErr);
    EXPECT_THAT(heard(), ElementsAre("next"));
}

TEST_F(Hotkeys, LiveOnWhenNobodyButTheProcessHoldsTheManager) {
    const auto id = registerSaying("first");
    manager.reset();
    EXPECT_EQ(center.press(id), noErr);
    EXPECT_THAT(heard(), ElementsAre("first"));
}

TEST_F(Hotkeys, EndWithTheManagerThatTheNextOneReplaces) {
    registerSaying("old");
    manager.reset();
    center.calls.clear();
    manager = newManager();
    EXPECT_THAT(center.calls, ElementsAre("unregister 1", "remove handler", "install handler"));
    EXPECT_EQ(center.press(1), eventNotHandledErr);
    EXPECT_EQ(registerSaying("new"), 1U);
    EXPECT_EQ(center.press(1), noErr);
    EXPECT_THAT(heard(), ElementsAre("new"));
}

TEST_F(Hotkeys, OfTheNewestManagerAreHeardWhileAnOlderOneLives) {
    const auto old = manager;
    registerSaying("old first");
    registerSaying("old second");
    manager = newManager();
    registerSaying("new first");
    EXPECT_EQ(center.press(1), noErr);
    EXPECT_EQ(center.press(2), eventNotHandledErr);
    EXPECT_THAT(heard(), ElementsAre("new first"));
}

TEST_F(Hotkeys, StayHeardWhenAManagerEndsThatWasReplacedBefore) {
    auto old = manager;
    registerSaying("old");
    manager = newManager();
    const auto id = registerSaying("new");
    center.calls.clear();
    old.reset();
    EXPECT_THAT(center.calls, ElementsAre("unregister 1", "remove handler"));
    EXPECT_EQ(center.press(id), noErr);
    EXPECT_THAT(heard(), ElementsAre("new"));
}

TEST_F(Hotkeys, AreLeftUnhandledWithoutACurrentManager) {
    const auto id = registerSaying("first");
    HotkeyManager::releaseCurrent();
    EXPECT_EQ(center.press(id), eventNotHandledErr);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Hotkeys, AndTheHandlerGoWithTheCurrentManager) {
    registerSaying("first");
    manager.reset();
    center.calls.clear();
    HotkeyManager::releaseCurrent();
    EXPECT_THAT(center.calls, ElementsAre("unregister 1", "remove handler"));
}

TEST_F(Hotkeys, AreRegisteredEvenIfNoHandlerCouldBeInstalled) {
    manager.reset();
    HotkeyManager::releaseCurrent();
    center.calls.clear();
    center.statusOfInstallation = -9866;
    manager = newManager();
    EXPECT_EQ(registerSaying("first"), 1U);
    EXPECT_THAT(log.texts(), ElementsAre("Registered hotkey 1: keyCode=8 modifiers=768"));
    manager.reset();
    HotkeyManager::releaseCurrent();
    EXPECT_THAT(center.calls, ElementsAre("install handler", "register 8 with 768 as 1", //
                                          "unregister 1"));
}

TEST(HotkeyCodes, AreTheKeyboardsOwn) {
    const std::vector<std::pair<Key, std::uint32_t>> expected{
        {Key::upArrow, 126}, {Key::downArrow, 125}, {Key::m, 46},    {Key::c, 8},
        {Key::key1, 18},     {Key::key2, 19},       {Key::key3, 20}, {Key::key4, 21},
        {Key::key5, 23},     {Key::key6, 22},       {Key::key7, 26}, {Key::key8, 28},
        {Key::key9, 25}};
    for (const auto& [keyCode, rawValue] : expected) {
        EXPECT_EQ(HotkeyManager::rawValue(keyCode), rawValue);
        EXPECT_EQ(HotkeyManager::keyCodeFrom(rawValue), keyCode);
    }
}

TEST(HotkeyCodes, AreNoneForOtherNumbers) {
    EXPECT_EQ(HotkeyManager::keyCodeFrom(22), Key::key6);
    EXPECT_EQ(HotkeyManager::keyCodeFrom(24), std::nullopt);
    EXPECT_EQ(HotkeyManager::keyCodeFrom(0), std::nullopt);
    EXPECT_EQ(HotkeyManager::keyCodeFrom(0xFFFFFFFFU), std::nullopt);
    int known = 0;
    for (std::uint32_t rawValue = 0; rawValue < 256; ++rawValue)
        known += HotkeyManager::keyCodeFrom(rawValue).has_value() ? 1 : 0;
    EXPECT_EQ(known, 13);
}

TEST(HotkeyCodes, OfCommandAndShiftAreCarbonsBits) {
    EXPECT_EQ(HotkeyManager::cmdShift, 768U);
}

} // namespace
} // namespace orvanta::test
