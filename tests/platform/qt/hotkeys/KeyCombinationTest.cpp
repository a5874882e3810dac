#include "platform/qt/hotkeys/KeyCombination.h"

#include "core/services/HotkeyManager.h"
#include "platform/qt/hotkeys/KeyTable.h"

#include <gtest/gtest.h>

#include <set>

namespace orvanta::test {
namespace {

TEST(KeyTable, HasEveryKeyThatTheProgramNames) {
    int named = 0;
    for (std::uint32_t code = 0; code < 256; ++code)
        if (HotkeyManager::keyCodeFrom(code)) {
            EXPECT_TRUE(findTableKey(code)) << code;
            ++named;
        }
    EXPECT_EQ(named, 13);
}

TEST(KeyTable, HasEachKeyOnce) {
    std::set<std::uint32_t> codes;
    std::set<std::uint32_t> keysyms;
    std::set<std::string_view> names;
    for (const TableKey& key : allTableKeys()) {
        EXPECT_TRUE(codes.insert(key.keyCode).second) << key.name;
        EXPECT_TRUE(keysyms.insert(key.keysym).second) << key.name;
        EXPECT_TRUE(names.insert(key.name).second) << key.name;
    }
}

TEST(KeyTable, HasLettersDigitsAndFunctionKeys) {
    std::set<std::string> names;
    for (const TableKey& key : allTableKeys())
        names.emplace(key.name);
    for (char letter = 'a'; letter <= 'z'; ++letter)
        EXPECT_TRUE(names.contains(std::string(1, letter))) << letter;
    for (char digit = '0'; digit <= '9'; ++digit) {
        EXPECT_TRUE(names.contains(std::string(1, digit))) << digit;
        EXPECT_TRUE(names.contains(std::string("KP_") + digit)) << digit;
    }
    for (int number = 1; number <= 20; ++number)
        EXPECT_TRUE(names.contains("F" + std::to_string(number))) << number;
}

TEST(KeyTable, HasNoKeyForOtherNumbers) {
    EXPECT_FALSE(findTableKey(10));
    EXPECT_FALSE(findTableKey(127));
    EXPECT_FALSE(findTableKey(0xFFFFFFFFU));
}

TEST(KeyCombinations, AreNamedAsUsersCallThem) {
    EXPECT_EQ(nameOf({126, 768}), "Super+Shift+Up");
    EXPECT_EQ(nameOf({46, 768}), "Super+Shift+M");
    EXPECT_EQ(nameOf({18, 256 + 512 + 2048 + 4096}), "Ctrl+Alt+Super+Shift+1");
    EXPECT_EQ(nameOf({96, 0}), "F5");
}

TEST(KeyCombinations, AreTriggersAsDesktopsReadThem) {
    EXPECT_EQ(triggerOf({126, 768}), "LOGO+SHIFT+Up");
    EXPECT_EQ(triggerOf({46, 768}), "LOGO+SHIFT+m");
    EXPECT_EQ(triggerOf({18, 256 + 512 + 2048 + 4096}), "CTRL+ALT+LOGO+SHIFT+1");
    EXPECT_EQ(triggerOf({49, 4096}), "CTRL+space");
}

TEST(KeyCombinations, AreUnknownWithAnUnknownKeyOrModifier) {
    EXPECT_TRUE(isKnown({126, 768}));
    EXPECT_TRUE(isKnown({126, 0}));
    EXPECT_FALSE(isKnown({127, 768}));
    EXPECT_FALSE(isKnown({126, 768 + 1024}));
    EXPECT_FALSE(isKnown({126, 1}));
}

} // namespace
} // namespace orvanta::test
