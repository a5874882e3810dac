#include "platform/qt/keys/X11KeyDownEvent.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

constexpr std::uint16_t kCapsLockOn = 0x02;
constexpr std::uint16_t kNumLockOn = 0x10;

/// Keys 8 to 16: m, a digit, u umlaut, a Cyrillic letter in Unicode's number, an arrow, alt,
/// super on the right only, num lock, one that says nothing.
const X11Keyboard& oddKeyboard() {
    static const X11Keyboard keyboard(
        {.firstKeycode = 8,
         .keysymsPerKeycode = 4,
         .keysyms = {'m',       'M',       0,   0,   '7',    '/', 0, 0, 0xfc,   0xdc, 0, 0,
                     0x100044c, 0x100042c, 'm', 'M', 0xff52, 0,   0, 0, 0xffe9, 0,    0, 0,
                     0xffec,    0,         0,   0,   0xff7f, 0,   0, 0, 0,      0,    0, 0},
         .modifierKeys = {{{}, {}, {}, {13}, {15}, {}, {14}, {}}}});
    return keyboard;
}

std::string charactersOf(std::uint8_t keycode, std::uint16_t state = 0) {
    return x11KeyDownEvent(oddKeyboard(), keycode, state).charactersIgnoringModifiers;
}

std::uint64_t flagsOf(std::uint16_t state) {
    return x11KeyDownEvent(oddKeyboard(), 8, state).modifierFlags;
}

TEST(X11KeyDownEvents, TellWhatTheKeyWritesInTheFirstLayout) {
    EXPECT_EQ(charactersOf(8), "m");
    EXPECT_EQ(charactersOf(9), "7");
    EXPECT_EQ(charactersOf(10), "ü");
    EXPECT_EQ(charactersOf(11), "ь");
}

TEST(X11KeyDownEvents, TellItTheSameWithModifiersAndAsACapitalWithCapsLock) {
    EXPECT_EQ(charactersOf(8, 0x41), "m");
    EXPECT_EQ(charactersOf(8, 0x41 | kNumLockOn), "m");
    EXPECT_EQ(charactersOf(8, kCapsLockOn), "M");
    EXPECT_EQ(charactersOf(9, kCapsLockOn), "7");
    EXPECT_EQ(charactersOf(10, kCapsLockOn), "Ü");
}

TEST(X11KeyDownEvents, TellNoCharactersWhereTheKeyWritesNone) {
    EXPECT_EQ(charactersOf(12), "");
    EXPECT_EQ(charactersOf(16), "");
    EXPECT_EQ(charactersOf(7), "") << "before the first key";
    EXPECT_EQ(charactersOf(200), "") << "beyond the last one";
}

TEST(X11KeyDownEvents, TellTheModifiersThatAreHeldAndNoLockKeys) {
    EXPECT_EQ(flagsOf(0), 0U);
    EXPECT_EQ(flagsOf(0x01), NSEventModifierFlagShift);
    EXPECT_EQ(flagsOf(0x04), NSEventModifierFlagControl);
    EXPECT_EQ(flagsOf(0x08), NSEventModifierFlagOption);
    EXPECT_EQ(flagsOf(0x40), NSEventModifierFlagCommand);
    EXPECT_EQ(flagsOf(0x41), NSEventModifierFlagCommand | NSEventModifierFlagShift);
    EXPECT_EQ(flagsOf(kCapsLockOn | kNumLockOn), 0U);
    EXPECT_EQ(flagsOf(0xFF00), 0U) << "pointer buttons and layouts";
}

} // namespace
} // namespace orvanta::test
