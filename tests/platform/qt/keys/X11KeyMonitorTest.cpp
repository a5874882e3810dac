#include "platform/qt/keys/X11KeyMonitor.h"

#include "platform/qt/hotkeys/X11HotKeyCenter.h"
#include "platform/qt/keys/makeKeyMonitor.h"
#include "tests/platform/qt/support/EventLoop.h"
#include "tests/platform/qt/support/HeardHotKeys.h"
#include "tests/platform/qt/support/OtherProgram.h"
#include "tests/support/VirtualDisplay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <thread>
#include <vector>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Seconds kPressBound{20.0};
constexpr std::uint32_t kSuperKeysymOfLeft = 0xffeb;

/// "command+shift m", for people to read.
std::string inWords(const KeyDownEvent& event) {
    std::string words;
    for (const auto& [flag, name] : {std::pair(NSEventModifierFlagCommand, "command+"),
                                     std::pair(NSEventModifierFlagControl, "control+"),
                                     std::pair(NSEventModifierFlagOption, "option+"),
                                     std::pair(NSEventModifierFlagShift, "shift+")})
        if ((event.modifierFlags & flag) != 0)
            words += name;
    return words + event.charactersIgnoringModifiers;
}

/// A monitor on a display on which another program's window has the keyboard, beside this program's
/// hot keys.
class AnX11KeyMonitor : public testing::Test {
protected:
    AnX11KeyMonitor() {
        startQt();
        EXPECT_TRUE(window.openWindow());
        center = X11HotKeyCenter::open(display.name());
        monitor = makeKeyMonitor({.display = display.name()}, *center, [this] { return hasFocus; });
        monitor->addGlobalMonitor([this](const KeyDownEvent& event) {
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            // Modifiers by themselves write nothing, and every combination begins with them.
            if (!event.charactersIgnoringModifiers.empty())
                told.push_back(inWords(event));
        });
    }

    void press(const std::string& keys) { display.xdotool({"key", keys}); }

    /// What is told up to the press of a key that is known to be told.
    std::vector<std::string> toldSoFar() {
        hasFocus = false;
        press("z");
        const auto isLast = [this] {
            return !told.empty() && std::tolower(told.back().back()) == 'z';
        };
        EXPECT_TRUE(eventuallyInEventLoop(kPressBound, isLast));
        auto all = std::exchange(told, {});
        if (!all.empty())
            all.pop_back();
        return all;
    }

    const std::thread::id mainThread = std::this_thread::get_id();
    VirtualDisplay display;
    OtherProgram window{display.name()};
    std::unique_ptr<X11HotKeyCenter> center;
    std::unique_ptr<KeyMonitor> monitor;
    bool hasFocus = false;
    std::vector<std::string> told;
};

TEST_F(AnX11KeyMonitor, SeesWhatIsPressedWhileAnotherProgramHasTheKeyboard) {
    press("super+shift+m");
    press("m");
    press("ctrl+alt+7");
    EXPECT_THAT(toldSoFar(), ElementsAre("command+shift+m", "m", "control+option+7"));
    EXPECT_THAT(window.takeKeys(), ElementsAre('m', 'm', '7', 'z')) << "and takes nothing away";
}

TEST_F(AnX11KeyMonitor, TellsCapitalsWithCapsLockOnAndNotWithNumLock) {
    press("Caps_Lock");
    press("super+shift+m");
    press("Caps_Lock");
    press("Num_Lock");
    press("super+shift+m");
    EXPECT_THAT(toldSoFar(), ElementsAre("command+shift+M", "command+shift+m"));
}

TEST_F(AnX11KeyMonitor, TellsOfAModifierThatWasHeldBeforeItBegan) {
    display.xdotool({"keydown", "super"});
    monitor = makeKeyMonitor({.display = display.name()}, *center, [] { return false; });
    monitor->addGlobalMonitor(
        [this](const KeyDownEvent& event) { told.push_back(inWords(event)); });
    press("m");
    display.xdotool({"keyup", "super"});
    EXPECT_THAT(toldSoFar(), ElementsAre("command+m"));
}

TEST_F(AnX11KeyMonitor, TellsNothingWhileThisProgramHasTheKeyboard) {
    hasFocus = true;
    press("super+shift+m");
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_THAT(toldSoFar(), IsEmpty());
}

TEST_F(AnX11KeyMonitor, LeavesAPressToTheHotKeyThatItIs) {
    HeardHotKeys heard(*center);
    ASSERT_EQ(heard.add(46, 768, 1), noErr);
    press("super+shift+m");
    press("super+m");
    EXPECT_TRUE(heard.hearsLast(1));
    EXPECT_THAT(toldSoFar(), ElementsAre("command+m"));
    EXPECT_THAT(heard.heard, ElementsAre(1));
    heard.remove(1);
    press("super+shift+m");
    EXPECT_THAT(toldSoFar(), ElementsAre("command+shift+m")) << "once it is no hot key";
}

TEST_F(AnX11KeyMonitor, SeesAPressThatIsAnotherProgramsHotKey) {
    ASSERT_TRUE(window.grab(window.keycodeOf('m'), 0x41));
    press("super+shift+m");
    EXPECT_THAT(toldSoFar(), ElementsAre("command+shift+m"));
}

TEST_F(AnX11KeyMonitor, TellsAHeldKeyOnce) {
    display.xdotool({"keydown", "a"});
    std::size_t repeats = 0;
    ASSERT_TRUE(eventuallyInEventLoop(kPressBound,
                                      [&] { return (repeats += window.takeKeys().size()) > 3; }));
    // Who passes another machine's keys on may tell repeats as presses.
    display.xdotool({"keydown", "a"});
    display.xdotool({"keyup", "a"});
    press("a");
    EXPECT_THAT(toldSoFar(), ElementsAre("a", "a"));
}

TEST_F(AnX11KeyMonitor, FollowsKeysAndModifiersToTheirNewPlaces) {
    const auto m = window.keycodeOf('m');
    const auto n = window.keycodeOf('n');
    window.swapKeys(m, n);
    window.setModifier(6, {});
    window.setModifier(5, {window.keycodeOf(kSuperKeysymOfLeft)});
    EXPECT_TRUE(eventLoopComesToRest());
    press("super+" + std::to_string(m));
    EXPECT_THAT(toldSoFar(), ElementsAre("command+n"));
}

TEST_F(AnX11KeyMonitor, TellsEverybodyWhoListens) {
    int others = 0;
    monitor->addGlobalMonitor([&](const KeyDownEvent&) { ++others; });
    press("m");
    EXPECT_THAT(toldSoFar(), ElementsAre("m"));
    EXPECT_EQ(others, 2) << "m and z";
}

TEST_F(AnX11KeyMonitor, EndsQuietlyWithTheDisplay) {
    press("m");
    display.kill();
    EXPECT_TRUE(eventLoopComesToRest());
    monitor->addGlobalMonitor([](const KeyDownEvent&) {});
    monitor.reset();
    center.reset();
}

TEST_F(AnX11KeyMonitor, MayEndAfterTheDisplay) {
    display.kill();
    monitor.reset();
}

TEST(X11KeyMonitorWithoutADisplay, IsNot) {
    EXPECT_EQ(X11KeyMonitor::open(":987654", {}), nullptr);
}

} // namespace
} // namespace orvanta::test
