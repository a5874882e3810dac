#include "platform/qt/hotkeys/KeyTable.h"

#include <algorithm>
#include <array>

namespace orvanta {
namespace {

constexpr auto kKeys = std::to_array<TableKey>({
    // Letters.
    {0, 0x0061, "a"},
    {1, 0x0073, "s"},
    {2, 0x0064, "d"},
    {3, 0x0066, "f"},
    {4, 0x0068, "h"},
    {5, 0x0067, "g"},
    {6, 0x007a, "z"},
    {7, 0x0078, "x"},
    {8, 0x0063, "c"},
    {9, 0x0076, "v"},
    {11, 0x0062, "b"},
    {12, 0x0071, "q"},
    {13, 0x0077, "w"},
    {14, 0x0065, "e"},
    {15, 0x0072, "r"},
    {16, 0x0079, "y"},
    {17, 0x0074, "t"},
    {31, 0x006f, "o"},
    {32, 0x0075, "u"},
    {34, 0x0069, "i"},
    {35, 0x0070, "p"},
    {37, 0x006c, "l"},
    {38, 0x006a, "j"},
    {40, 0x006b, "k"},
    {45, 0x006e, "n"},
    {46, 0x006d, "m"},
    // Digits.
    {18, 0x0031, "1"},
    {19, 0x0032, "2"},
    {20, 0x0033, "3"},
    {21, 0x0034, "4"},
    {22, 0x0036, "6"},
    {23, 0x0035, "5"},
    {25, 0x0039, "9"},
    {26, 0x0037, "7"},
    {28, 0x0038, "8"},
    {29, 0x0030, "0"},
    // Punctuation.
    {24, 0x003d, "equal"},
    {27, 0x002d, "minus"},
    {30, 0x005d, "bracketright"},
    {33, 0x005b, "bracketleft"},
    {39, 0x0027, "apostrophe"},
    {41, 0x003b, "semicolon"},
    {42, 0x005c, "backslash"},
    {43, 0x002c, "comma"},
    {44, 0x002f, "slash"},
    {47, 0x002e, "period"},
    {49, 0x0020, "space"},
    {50, 0x0060, "grave"},
    // Keys that write no character.
    {36, 0xff0d, "Return"},
    {48, 0xff09, "Tab"},
    {51, 0xff08, "BackSpace"},
    {53, 0xff1b, "Escape"},
    {114, 0xff63, "Insert"},
    {115, 0xff50, "Home"},
    {116, 0xff55, "Prior"},
    {117, 0xffff, "Delete"},
    {119, 0xff57, "End"},
    {121, 0xff56, "Next"},
    {123, 0xff51, "Left"},
    {124, 0xff53, "Right"},
    {125, 0xff54, "Down"},
    {126, 0xff52, "Up"},
    // Function keys.
    {122, 0xffbe, "F1"},
    {120, 0xffbf, "F2"},
    {99, 0xffc0, "F3"},
    {118, 0xffc1, "F4"},
    {96, 0xffc2, "F5"},
    {97, 0xffc3, "F6"},
    {98, 0xffc4, "F7"},
    {100, 0xffc5, "F8"},
    {101, 0xffc6, "F9"},
    {109, 0xffc7, "F10"},
    {103, 0xffc8, "F11"},
    {111, 0xffc9, "F12"},
    {105, 0xffca, "F13"},
    {107, 0xffcb, "F14"},
    {113, 0xffcc, "F15"},
    {106, 0xffcd, "F16"},
    {64, 0xffce, "F17"},
    {79, 0xffcf, "F18"},
    {80, 0xffd0, "F19"},
    {90, 0xffd1, "F20"},
    // The keypad.
    {65, 0xffae, "KP_Decimal"},
    {67, 0xffaa, "KP_Multiply"},
    {69, 0xffab, "KP_Add"},
    {75, 0xffaf, "KP_Divide"},
    {76, 0xff8d, "KP_Enter"},
    {78, 0xffad, "KP_Subtract"},
    {81, 0xffbd, "KP_Equal"},
    {82, 0xffb0, "KP_0"},
    {83, 0xffb1, "KP_1"},
    {84, 0xffb2, "KP_2"},
    {85, 0xffb3, "KP_3"},
    {86, 0xffb4, "KP_4"},
    {87, 0xffb5, "KP_5"},
    {88, 0xffb6, "KP_6"},
    {89, 0xffb7, "KP_7"},
    {91, 0xffb8, "KP_8"},
    {92, 0xffb9, "KP_9"},
});

} // namespace

std::span<const TableKey> allTableKeys() noexcept {
    return kKeys;
}

std::optional<TableKey> findTableKey(std::uint32_t keyCode) noexcept {
    const auto* const found = std::find_if(
        kKeys.begin(), kKeys.end(), [=](const TableKey& key) { return key.keyCode == keyCode; });
    return found == kKeys.end() ? std::nullopt : std::optional(*found);
}

} // namespace orvanta
