#include "platform/qt/hotkeys/X11HotKeyCenter.h"

#include "platform/qt/hotkeys/KeyTable.h"
#include "tests/platform/qt/support/EventLoop.h"
#include "tests/platform/qt/support/HeardHotKeys.h"
#include "tests/platform/qt/support/OtherProgram.h"
#include "tests/support/VirtualDisplay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kUpArrow = 126;
constexpr std::uint32_t kDownArrow = 125;
constexpr std::uint32_t kM = 46;
constexpr std::uint32_t kSuperShift = 768;

constexpr std::uint32_t kUpKeysym = 0xff52;
constexpr std::uint32_t kScrollLockKeysym = 0xff14;
constexpr std::uint32_t kSuperKeysym = 0xffeb;
/// Of the keyboard that a display has at first.
constexpr std::uint16_t kSuperShiftState = 0x41;
constexpr std::uint16_t kNumLockState = 0x10;
constexpr std::uint16_t kFifthModifier = 0x80;

class X11HotKeys : public testing::Test {
protected:
    explicit X11HotKeys(int screens = 1) : display(screens) {
        startQt();
        center = X11HotKeyCenter::open(display.name());
        heard = std::make_unique<HeardHotKeys>(*center);
    }

    void press(const std::string& keys) { display.xdotool({"key", keys}); }

    /// Whether another program can have the presses.
    bool isFree(std::uint8_t keycode, std::uint16_t state) {
        const bool isGranted = other.grab(keycode, state);
        if (isGranted)
            other.ungrab(keycode, state);
        return isGranted;
    }

    /// Sends away a press that is known to arrive, and says what arrived up to it.
    std::vector<std::uint32_t> heardUpToMute() {
        constexpr std::uint32_t kMute = 99;
        EXPECT_EQ(heard->add(kM, kSuperShift, kMute), noErr);
        press("super+shift+m");
        EXPECT_TRUE(heard->hearsLast(kMute));
        heard->remove(kMute);
        auto all = heard->heard;
        if (!all.empty())
            all.pop_back();
        return all;
    }

    VirtualDisplay display;
    OtherProgram other{display.name()};
    std::unique_ptr<X11HotKeyCenter> center;
    std::unique_ptr<HeardHotKeys> heard;
};

class X11HotKeysOnTwoScreens : public X11HotKeys {
protected:
    X11HotKeysOnTwoScreens() : X11HotKeys(2) {}
};

TEST_F(X11HotKeys, AreEveryKeyOfTheTableThatTheKeyboardHas) {
    std::vector<std::string> missing;
    for (const TableKey& key : allTableKeys()) {
        const OSStatus status = heard->add(key.keyCode, kSuperShift, key.keyCode);
        if (status == eventHotKeyInvalidErr) {
            missing.emplace_back(key.name);
            continue;
        }
        EXPECT_EQ(status, noErr) << key.name;
        press("super+shift+" + std::string(key.name));
        EXPECT_TRUE(heard->hearsLast(key.keyCode)) << key.name;
    }
    EXPECT_THAT(missing, ElementsAre("F13", "F14", "F15", "F16", "F17", "F18", "F19", "F20"));
}

TEST_F(X11HotKeys, AreRefusedForKeysAndModifiersThatNoKeyboardHas) {
    EXPECT_EQ(heard->add(127, kSuperShift, 1), eventHotKeyInvalidErr);
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift + 1024, 1), eventHotKeyInvalidErr);
}

TEST_F(X11HotKeys, AreRefusedWhenTheProgramHasThemAlready) {
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), noErr);
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 2), eventHotKeyExistsErr);
    EXPECT_EQ(heard->add(kUpArrow, 256, 3), noErr);
    press("super+shift+Up");
    press("super+Up");
    EXPECT_THAT(heardUpToMute(), ElementsAre(1, 3));
    heard->remove(1);
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 2), noErr);
}

TEST_F(X11HotKeys, AreRefusedWholeWhenAnotherProgramHasThemWithALockKeyOnly) {
    const auto up = other.keycodeOf(kUpKeysym);
    ASSERT_TRUE(other.grab(up, kSuperShiftState | kNumLockState));
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), eventHotKeyExistsErr);
    EXPECT_TRUE(eventually(Seconds(20), [&] { return isFree(up, kSuperShiftState); }));
    other.ungrab(up, kSuperShiftState | kNumLockState);
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), noErr);
}

TEST_F(X11HotKeysOnTwoScreens, AreRefusedWholeWhenAnotherProgramHasThemOnOneScreen) {
    const auto up = other.keycodeOf(kUpKeysym);
    ASSERT_TRUE(other.grab(up, kSuperShiftState, 1));
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), eventHotKeyExistsErr);
    EXPECT_TRUE(eventually(Seconds(20), [&] { return isFree(up, kSuperShiftState); }));
}

TEST_F(X11HotKeysOnTwoScreens, AreTakenOnAllScreens) {
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), noErr);
    const auto up = other.keycodeOf(kUpKeysym);
    EXPECT_FALSE(other.grab(up, kSuperShiftState, 0));
    EXPECT_FALSE(other.grab(up, kSuperShiftState, 1));
    heard->remove(1);
    EXPECT_TRUE(eventually(Seconds(20), [&] { return other.grab(up, kSuperShiftState, 1); }));
}

TEST_F(X11HotKeys, TakeUpAThirdLockKey) {
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), noErr);
    const auto up = other.keycodeOf(kUpKeysym);
    EXPECT_TRUE(isFree(up, kSuperShiftState | kFifthModifier));
    other.setModifier(7, {other.keycodeOf(kScrollLockKeysym)});
    ASSERT_TRUE(eventuallyInEventLoop(
        Seconds(20), [&] { return !isFree(up, kSuperShiftState | kFifthModifier); }));
    for (const char* lock : {"Scroll_Lock", "Num_Lock", "Caps_Lock"}) {
        press(lock);
        press("super+shift+Up");
    }
    EXPECT_THAT(heardUpToMute(), ElementsAre(1, 1, 1));
}

TEST_F(X11HotKeys, FollowSuperToAnotherModifier) {
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), noErr);
    const auto up = other.keycodeOf(kUpKeysym);
    other.setModifier(6, {});
    other.setModifier(5, {other.keycodeOf(kSuperKeysym)});
    ASSERT_TRUE(eventuallyInEventLoop(Seconds(20), [&] { return isFree(up, kSuperShiftState); }));
    press("super+shift+Up");
    EXPECT_THAT(heardUpToMute(), ElementsAre(1));
}

TEST_F(X11HotKeys, FollowAKeyToItsNewPlace) {
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), noErr);
    EXPECT_EQ(heard->add(kDownArrow, kSuperShift, 2), noErr);
    const auto up = other.keycodeOf(kUpKeysym);
    const auto down = other.keycodeOf(0xff54);
    other.swapKeys(up, down);
    EXPECT_TRUE(eventLoopComesToRest());
    press(std::string("super+shift+") + std::to_string(down));
    press(std::string("super+shift+") + std::to_string(up));
    EXPECT_THAT(heardUpToMute(), ElementsAre(1, 2));
}

TEST_F(X11HotKeys, ComeBackWithAKeyThatWasMissing) {
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), noErr);
    const auto up = other.keycodeOf(kUpKeysym);
    other.setKeysym(up, 'x');
    ASSERT_TRUE(eventuallyInEventLoop(Seconds(20), [&] { return isFree(up, kSuperShiftState); }));
    other.setKeysym(up, kUpKeysym);
    ASSERT_TRUE(eventuallyInEventLoop(Seconds(20), [&] { return !isFree(up, kSuperShiftState); }));
    press("super+shift+Up");
    EXPECT_THAT(heardUpToMute(), ElementsAre(1));
}

TEST_F(X11HotKeys, AreToldToTheNewestHandlerFirst) {
    std::vector<std::string> told;
    OSStatus newestAnswer = eventNotHandledErr;
    auto older = HotKeyCenter::HandlerReference::none;
    auto newest = HotKeyCenter::HandlerReference::none;
    heard.reset();
    center->installHandler(
        [&](const HotKeyEvent*) {
            told.emplace_back("older");
            return noErr;
        },
        older);
    center->installHandler(
        [&](const HotKeyEvent*) {
            told.emplace_back("newest");
            return newestAnswer;
        },
        newest);
    auto reference = HotKeyCenter::Reference::none;
    ASSERT_EQ(center->registerHotKey(kUpArrow, kSuperShift, {.signature = 7, .id = 1}, reference),
              noErr);
    const auto pressUp = [&](std::size_t tellings) {
        press("super+shift+Up");
        return eventuallyInEventLoop(Seconds(20), [&] { return told.size() == tellings; });
    };
    EXPECT_TRUE(pressUp(2));
    newestAnswer = noErr;
    EXPECT_TRUE(pressUp(3));
    center->removeHandler(newest);
    EXPECT_TRUE(pressUp(4));
    EXPECT_THAT(told, ElementsAre("newest", "older", "newest", "older"));
}

TEST_F(X11HotKeys, EndQuietlyWithTheDisplay) {
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), noErr);
    display.kill();
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_EQ(heard->add(kDownArrow, kSuperShift, 2), eventInternalErr);
    heard->remove(1);
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_THAT(heard->heard, IsEmpty());
}

TEST_F(X11HotKeys, FailWithADisplayThatHasJustDied) {
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), noErr);
    display.kill();
    EXPECT_EQ(heard->add(kDownArrow, kSuperShift, 2), eventInternalErr);
    heard->remove(1);
    EXPECT_TRUE(eventLoopComesToRest());
}

TEST_F(X11HotKeys, MayEndAfterTheDisplay) {
    EXPECT_EQ(heard->add(kUpArrow, kSuperShift, 1), noErr);
    display.kill();
    heard->remove(1);
    heard.reset();
    center.reset();
}

TEST(X11HotKeysWithoutADisplay, AreNot) {
    EXPECT_EQ(X11HotKeyCenter::open(":987654"), nullptr);
}

} // namespace
} // namespace orvanta::test
