#include "platform/qt/hotkeys/X11Keyboard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr std::uint32_t kUp = 0xff52;
constexpr std::uint32_t kShift = 0xffe1;
constexpr std::uint32_t kCapsLock = 0xffe5;
constexpr std::uint32_t kControl = 0xffe3;
constexpr std::uint32_t kAlt = 0xffe9;
constexpr std::uint32_t kSuper = 0xffeb;
constexpr std::uint32_t kSuperRight = 0xffec;
constexpr std::uint32_t kNumLock = 0xff7f;
constexpr std::uint32_t kScrollLock = 0xff14;

/// Keys 8 to 18, of two layouts: up, m, shift, lock, control, alt, num lock, scroll lock, super,
/// one for every use and one that says m in the second layout.
X11Keyboard::Mapping smallKeyboard() {
    return {.firstKeycode = 8,
            .keysymsPerKeycode = 4,
            .keysyms = {kUp,       0, 0, 0, 'm',         'M', 0,   0,  kShift, 0, 0, 0,
                        kCapsLock, 0, 0, 0, kControl,    0,   0,   0,  kAlt,   0, 0, 0,
                        kNumLock,  0, 0, 0, kScrollLock, 0,   0,   0,  kSuper, 0, 0, 0,
                        0,         0, 0, 0, 'x',         'X', 'm', 'M'},
            .modifierKeys = {{{10}, {11}, {12}, {13}, {14}, {}, {16}, {}}}};
}

void say(X11Keyboard::Mapping& mapping, std::uint8_t keycode,
         const std::array<std::uint32_t, 4>& keysyms) {
    std::copy(keysyms.begin(), keysyms.end(), mapping.keysyms.begin() + (keycode - 8) * 4);
}

std::vector<std::uint16_t> statesOf(const X11Keyboard::Mapping& mapping,
                                    const KeyCombination& combination) {
    const auto grab = X11Keyboard(mapping).grabFor(combination);
    return grab ? grab->states : std::vector<std::uint16_t>();
}

TEST(X11Keyboards, GrabACombinationWithEveryStateOfTheLockKeys) {
    const auto grab = X11Keyboard(smallKeyboard()).grabFor({126, 768});
    ASSERT_TRUE(grab);
    EXPECT_THAT(grab->keycodes, ElementsAre(8));
    constexpr std::uint16_t kSuperShift = 0x40 + 0x01;
    EXPECT_THAT(grab->states, UnorderedElementsAre(kSuperShift, kSuperShift + 0x02,
                                                   kSuperShift + 0x10, kSuperShift + 0x12));
}

TEST(X11Keyboards, GrabEightStatesWhereThereAreThreeLockKeys) {
    auto mapping = smallKeyboard();
    mapping.modifierKeys[7] = {15};
    EXPECT_THAT(statesOf(mapping, {126, 0}),
                UnorderedElementsAre(0x00, 0x02, 0x10, 0x12, 0x80, 0x82, 0x90, 0x92));
}

TEST(X11Keyboards, GrabTwoStatesWhereCapsLockIsTheOnlyOne) {
    auto mapping = smallKeyboard();
    mapping.modifierKeys[4] = {};
    EXPECT_THAT(statesOf(mapping, {126, 0}), UnorderedElementsAre(0x00, 0x02));
}

TEST(X11Keyboards, TakeTheModifiersFromTheKeysThatBearThem) {
    auto mapping = smallKeyboard();
    mapping.modifierKeys[4] = {};
    EXPECT_THAT(statesOf(mapping, {126, 256}), ElementsAre(0x40, 0x42));
    EXPECT_THAT(statesOf(mapping, {126, 512}), ElementsAre(0x01, 0x03));
    EXPECT_THAT(statesOf(mapping, {126, 2048}), ElementsAre(0x08, 0x0A));
    EXPECT_THAT(statesOf(mapping, {126, 4096}), ElementsAre(0x04, 0x06));
    mapping.modifierKeys[6] = {};
    mapping.modifierKeys[5] = {0, 16};
    EXPECT_THAT(statesOf(mapping, {126, 256}), ElementsAre(0x20, 0x22));
}

TEST(X11Keyboards, TakeTheRightSuperKeyWhereThereIsNoLeftOne) {
    auto mapping = smallKeyboard();
    say(mapping, 16, {kSuperRight, 0, 0, 0});
    EXPECT_EQ(statesOf(mapping, {126, 256}).front(), 0x40);
}

TEST(X11Keyboards, LackACombinationWithoutItsKeyOrModifier) {
    auto mapping = smallKeyboard();
    EXPECT_FALSE(X11Keyboard(mapping).grabFor({8, 768}));
    EXPECT_FALSE(X11Keyboard(mapping).grabFor({1000, 768}));
    EXPECT_FALSE(X11Keyboard(mapping).grabFor({126, 1}));
    mapping.modifierKeys[6] = {};
    EXPECT_FALSE(X11Keyboard(mapping).grabFor({126, 768}));
    EXPECT_TRUE(X11Keyboard(mapping).grabFor({126, 512}));
}

TEST(X11Keyboards, MeanTheKeyThatSaysItInTheFirstLayout) {
    EXPECT_THAT(X11Keyboard(smallKeyboard()).grabFor({46, 0})->keycodes, ElementsAre(9));
}

TEST(X11Keyboards, MeanEveryKeyThatSaysItThere) {
    auto mapping = smallKeyboard();
    say(mapping, 17, {kUp, 0, 0, 0});
    EXPECT_THAT(X11Keyboard(mapping).grabFor({126, 0})->keycodes, ElementsAre(8, 17));
}

TEST(X11Keyboards, MeanTheKeypadsKeysThatSayItWithNumLock) {
    constexpr std::uint32_t kKeypadDelete = 0xff9f;
    constexpr std::uint32_t kKeypadDecimal = 0xffae;
    auto mapping = smallKeyboard();
    say(mapping, 9, {kKeypadDelete, kKeypadDecimal, 0, 0});
    say(mapping, 17, {kKeypadDecimal, kKeypadDecimal, 0, 0});
    EXPECT_THAT(X11Keyboard(mapping).grabFor({65, 0})->keycodes, ElementsAre(9, 17));
}

TEST(X11Keyboards, FindAKeyInTheSecondLayout) {
    auto mapping = smallKeyboard();
    say(mapping, 9, {0x6cd, 0x6ed, 'm', 'M'});
    say(mapping, 18, {0, 0, 0, 0});
    EXPECT_THAT(X11Keyboard(mapping).grabFor({46, 0})->keycodes, ElementsAre(9));
}

TEST(X11Keyboards, ThatTellNothingLackEverything) {
    EXPECT_FALSE(X11Keyboard({}).grabFor({126, 0}));
    EXPECT_FALSE(X11Keyboard({}).grabFor({126, 768}));
}

TEST(X11Grabs, CoverTheirPressesWhateverThePointersButtonsAndTheLayoutAre) {
    const X11Grab grab{.keycodes = {8}, .states = {0x41, 0x43}};
    EXPECT_TRUE(grab.covers(8, 0x41));
    EXPECT_TRUE(grab.covers(8, 0x43));
    EXPECT_TRUE(grab.covers(8, 0x2141));
    EXPECT_FALSE(grab.covers(9, 0x41));
    EXPECT_FALSE(grab.covers(8, 0x40));
    EXPECT_FALSE(grab.covers(8, 0x45));
}

TEST(X11Grabs, OverlapWhereAKeyAndAStateAreCommon) {
    const X11Grab grab{.keycodes = {8, 9}, .states = {0x41, 0x43}};
    EXPECT_TRUE(grab.overlaps({.keycodes = {9, 10}, .states = {0x43}}));
    EXPECT_FALSE(grab.overlaps({.keycodes = {10}, .states = {0x43}}));
    EXPECT_FALSE(grab.overlaps({.keycodes = {8}, .states = {0x40}}));
}

} // namespace
} // namespace orvanta::test
