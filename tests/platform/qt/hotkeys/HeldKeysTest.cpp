#include "platform/qt/hotkeys/HeldKeys.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

TEST(HeldKeys, ArePressedOnceWhenTheirRepeatsArePressesAlone) {
    HeldKeys keys;
    EXPECT_TRUE(keys.press(111, 1000));
    EXPECT_FALSE(keys.press(111, 1660));
    EXPECT_FALSE(keys.press(111, 1700));
    keys.release(111, 1720);
    EXPECT_TRUE(keys.press(111, 1800));
}

TEST(HeldKeys, ArePressedOnceWhenTheirRepeatsReleaseThemForNoTime) {
    HeldKeys keys;
    EXPECT_TRUE(keys.press(111, 1000));
    keys.release(111, 1660);
    EXPECT_FALSE(keys.press(111, 1660));
    keys.release(111, 1700);
    EXPECT_FALSE(keys.press(111, 1700));
    keys.release(111, 1720);
    EXPECT_TRUE(keys.press(111, 1721));
}

TEST(HeldKeys, DoNotHideOtherKeys) {
    HeldKeys keys;
    EXPECT_TRUE(keys.press(111, 1000));
    EXPECT_TRUE(keys.press(116, 1000));
    EXPECT_FALSE(keys.press(111, 1660));
    keys.release(116, 1700);
    EXPECT_TRUE(keys.press(116, 1800));
    EXPECT_FALSE(keys.press(111, 1800));
}

TEST(HeldKeys, MayBePressedAtTheServersFirstMoment) {
    HeldKeys keys;
    EXPECT_TRUE(keys.press(111, 0));
}

} // namespace
} // namespace orvanta::test
