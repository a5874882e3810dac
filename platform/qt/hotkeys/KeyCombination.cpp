#include "platform/qt/hotkeys/KeyCombination.h"

#include "platform/qt/hotkeys/KeyTable.h"

#include <array>
#include <cctype>
#include <string_view>

namespace orvanta {
namespace {

struct ModifierWords {
    std::uint32_t bit = 0;
    std::string_view name;
    std::string_view trigger;
};

constexpr std::array<ModifierWords, 4> kModifiers{{
    {kControlModifier, "Ctrl", "CTRL"},
    {kOptionModifier, "Alt", "ALT"},
    {kCommandModifier, "Super", "LOGO"},
    {kShiftModifier, "Shift", "SHIFT"},
}};

std::string keyNameOf(const KeyCombination& combination) {
    const auto key = findTableKey(combination.keyCode);
    return key ? std::string(key->name) : std::string();
}

std::string joined(const KeyCombination& combination, std::string_view ModifierWords::*words,
                   const std::string& key) {
    std::string text;
    for (const ModifierWords& modifier : kModifiers)
        if ((combination.modifiers & modifier.bit) != 0)
            text.append(modifier.*words).append("+");
    return text + key;
}

} // namespace

bool isKnown(const KeyCombination& combination) {
    std::uint32_t known = 0;
    for (const ModifierWords& modifier : kModifiers)
        known |= modifier.bit;
    return findTableKey(combination.keyCode) && (combination.modifiers & ~known) == 0;
}

std::string nameOf(const KeyCombination& combination) {
    std::string key = keyNameOf(combination);
    // Letters are printed on their keys as capitals.
    if (key.size() == 1)
        key[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(key[0])));
    return joined(combination, &ModifierWords::name, key);
}

std::string triggerOf(const KeyCombination& combination) {
    return joined(combination, &ModifierWords::trigger, keyNameOf(combination));
}

} // namespace orvanta
