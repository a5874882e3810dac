#include "tests/platform/qt/support/OtherProgram.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/VirtualDisplay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Seconds kBound(60);
constexpr std::uint32_t kUpKeysym = 0xff52;
constexpr std::uint16_t kSuperShiftState = 0x41;

const std::vector<std::string> kRegistered{
    "info: Registered hotkey 1: keyCode=126 modifiers=768",
    "info: Registered hotkey 2: keyCode=125 modifiers=768",
    "info: Registered hotkey 3: keyCode=46 modifiers=768",
    "info: Registered hotkey 4: keyCode=8 modifiers=768",
};

/// The program's own hot keys on a real display on which another program's window has the focus.
class HotKeysOnX11 : public testing::Test {
protected:
    HotKeysOnX11() { EXPECT_TRUE(window.openWindow()); }

    /// Starts the program; returns what it says until it is ready.
    std::vector<std::string> start() {
        const ScopedEnvironment environment({{"DISPLAY", display.name()},
                                             {"WAYLAND_DISPLAY", std::nullopt},
                                             {"XDG_SESSION_TYPE", "x11"},
                                             {"DBUS_SESSION_BUS_ADDRESS", "disabled:"}});
        program = std::make_unique<ChildProcess>(ChildProcess::Launch{
            .command = {ORVANTA_HOT_KEYS}, .logFile = "/dev/null", .isTalkedTo = true});
        return linesUpTo("ready");
    }

    std::vector<std::string> linesUpTo(const std::string& last) {
        std::vector<std::string> lines;
        while (const auto line = program->readLine(kBound)) {
            if (*line == last)
                return lines;
            lines.push_back(*line);
        }
        lines.emplace_back("(nothing more)");
        return lines;
    }

    std::vector<std::string> tell(const std::string& command) {
        program->writeLine(command);
        return linesUpTo("done");
    }

    void press(const std::string& keys) { display.xdotool({"key", keys}); }

    void pressAll() {
        for (const char* key : {"Up", "Down", "m", "c"})
            press(std::string("super+shift+") + key);
    }

    /// What the program does for the presses so far. One more, of the command centre, ends it.
    std::vector<std::string> actions() {
        press("super+shift+c");
        return linesUpTo("command center");
    }

    /// What the window was told of the presses so far. One more ends it.
    std::vector<std::uint32_t> keysOfWindow() {
        press("z");
        std::vector<std::uint32_t> keys;
        EXPECT_TRUE(eventually(kBound, [&] {
            for (const std::uint32_t key : window.takeKeys())
                keys.push_back(key);
            return !keys.empty() && keys.back() == 'z';
        }));
        if (!keys.empty())
            keys.pop_back();
        return keys;
    }

    VirtualDisplay display;
    OtherProgram window{display.name()};
    std::unique_ptr<ChildProcess> program;
};

TEST_F(HotKeysOnX11, AreFourAndReachTheProgramOnceEach) {
    EXPECT_EQ(start(), kRegistered);
    press("super+shift+Up");
    EXPECT_EQ(program->readLine(kBound), "volume up");
    press("super+shift+Down");
    EXPECT_EQ(program->readLine(kBound), "volume down");
    press("super+shift+m");
    EXPECT_EQ(program->readLine(kBound), "mute");
    press("super+shift+c");
    EXPECT_EQ(program->readLine(kBound), "command center");
    EXPECT_THAT(actions(), IsEmpty());
    EXPECT_THAT(keysOfWindow(), IsEmpty());
}

TEST_F(HotKeysOnX11, WorkWithCapsLockAndNumLockOn) {
    start();
    for (const char* lock : {"Caps_Lock", "Num_Lock", "Caps_Lock"}) {
        press(lock);
        pressAll();
        EXPECT_THAT(linesUpTo("command center"), ElementsAre("volume up", "volume down", "mute"))
            << "after " << lock;
    }
    EXPECT_THAT(keysOfWindow(), IsEmpty());
}

TEST_F(HotKeysOnX11, LeaveOtherCombinationsOfTheirKeysToTheWindow) {
    start();
    for (const char* keys : {"Up", "shift+Up", "super+Up", "ctrl+super+shift+Up", "m"})
        press(keys);
    EXPECT_THAT(actions(), IsEmpty());
    EXPECT_THAT(keysOfWindow(), ElementsAre(kUpKeysym, kUpKeysym, kUpKeysym, kUpKeysym, 'm'));
}

TEST_F(HotKeysOnX11, ThatAnotherProgramHasAreLoggedAndTheOthersWork) {
    ASSERT_TRUE(window.grab(window.keycodeOf('m'), kSuperShiftState));
    EXPECT_THAT(start(), ElementsAre(kRegistered[0], kRegistered[1],
                                     "error: Failed to register hotkey: -9878", kRegistered[3]));
    pressAll();
    EXPECT_THAT(linesUpTo("command center"), ElementsAre("volume up", "volume down"));
    EXPECT_THAT(actions(), IsEmpty());
}

TEST_F(HotKeysOnX11, GoBackToEverybodyWhenTheyAreReleased) {
    start();
    const auto up = window.keycodeOf(kUpKeysym);
    EXPECT_FALSE(window.grab(up, kSuperShiftState));
    EXPECT_THAT(tell("unregister 1"), IsEmpty());
    EXPECT_TRUE(eventually(kBound, [&] { return window.grab(up, kSuperShiftState); }));
    window.ungrab(up, kSuperShiftState);
    press("super+shift+Up");
    EXPECT_THAT(actions(), IsEmpty());
    EXPECT_THAT(keysOfWindow(), ElementsAre(kUpKeysym));
}

TEST_F(HotKeysOnX11, ComeOnceHoweverLongTheirKeysAreHeld) {
    start();
    // How long a key is held until it has repeated.
    const double begin = monotonicSeconds();
    display.xdotool({"keydown", "a"});
    std::size_t repeats = 0;
    ASSERT_TRUE(eventually(kBound, [&] { return (repeats += window.takeKeys().size()) > 3; }));
    display.xdotool({"keyup", "a"});
    const Seconds held(monotonicSeconds() - begin);

    display.xdotool({"keydown", "super", "keydown", "shift", "keydown", "Up"});
    EXPECT_EQ(program->readLine(kBound), "volume up");
    letTimePass(2 * held);
    display.xdotool({"keyup", "Up", "keyup", "shift", "keyup", "super"});
    press("super+shift+Up");
    EXPECT_THAT(actions(), ElementsAre("volume up"));
}

TEST_F(HotKeysOnX11, WorkOnAnotherLayout) {
    start();
    const auto place = window.keycodeOf('m');
    runToEnd({"setxkbmap", "-display", display.name(), "-layout", "fr"});
    EXPECT_NE(window.keycodeOf('m'), place);
    // Until the program has seen the change, the key is the window's.
    ASSERT_TRUE(eventually(kBound, [this] {
        press("super+shift+m");
        return program->readLine(Seconds(1)) == "mute";
    }));
    actions();
    pressAll();
    EXPECT_THAT(linesUpTo("command center"), ElementsAre("volume up", "volume down", "mute"));
}

TEST_F(HotKeysOnX11, DieWithTheDisplayWhileTheProgramLivesOn) {
    start();
    display.kill();
    EXPECT_THAT(tell("register 97 768 again"),
                ElementsAre("error: Failed to register hotkey: -9868"));
    EXPECT_THAT(tell("unregister 1"), IsEmpty());
    EXPECT_TRUE(program->isRunning());
}

} // namespace
} // namespace orvanta::test
