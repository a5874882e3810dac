#include "platform/qt/hotkeys/X11Keyboard.h"

#include "platform/qt/hotkeys/KeyTable.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace orvanta {
namespace {

constexpr std::uint16_t kShiftState = 1U << 0U;
constexpr std::uint16_t kCapsLockState = 1U << 1U;
constexpr std::uint16_t kControlState = 1U << 2U;
/// The rest of an event's state are pointer buttons and keyboard groups.
constexpr std::uint16_t kAllModifiers = 0xFFU;

constexpr std::uint32_t kScrollLockKeysym = 0xff14;
constexpr std::uint32_t kNumLockKeysym = 0xff7f;
constexpr std::uint32_t kAltLeftKeysym = 0xffe9;
constexpr std::uint32_t kAltRightKeysym = 0xffea;
constexpr std::uint32_t kSuperLeftKeysym = 0xffeb;
constexpr std::uint32_t kSuperRightKeysym = 0xffec;

template <class Values, class Value>
bool contains(const Values& values, Value value) {
    return std::find(values.begin(), values.end(), value) != values.end();
}

template <class Value>
bool haveCommon(const std::vector<Value>& some, const std::vector<Value>& others) {
    return std::any_of(some.begin(), some.end(),
                       [&](Value value) { return contains(others, value); });
}

} // namespace

bool X11Grab::covers(std::uint8_t keycode, std::uint16_t state) const {
    return contains(keycodes, keycode) &&
           contains(states, static_cast<std::uint16_t>(state & kAllModifiers));
}

bool X11Grab::overlaps(const X11Grab& other) const {
    return haveCommon(keycodes, other.keycodes) && haveCommon(states, other.states);
}

X11Keyboard::X11Keyboard(Mapping mapping) : mapping_(std::move(mapping)) {}

std::optional<X11Grab> X11Keyboard::grabFor(const KeyCombination& combination) const {
    const auto key = findTableKey(combination.keyCode);
    const auto state = stateFor(combination.modifiers);
    if (!key || !isKnown(combination) || !state)
        return std::nullopt;
    X11Grab grab{.keycodes = keycodesOf(key->keysym), .states = {}};
    if (grab.keycodes.empty())
        return std::nullopt;
    for (const std::uint16_t locks : lockStates())
        grab.states.push_back(*state | locks);
    return grab;
}

std::uint32_t X11Keyboard::modifiersIn(std::uint16_t state) const {
    const std::initializer_list<std::pair<std::uint32_t, unsigned>> bits{
        {kShiftModifier, kShiftState},
        {kControlModifier, kControlState},
        {kCommandModifier, modifierOf(kSuperLeftKeysym) | modifierOf(kSuperRightKeysym)},
        {kOptionModifier, modifierOf(kAltLeftKeysym) | modifierOf(kAltRightKeysym)}};
    std::uint32_t modifiers = 0;
    for (const auto& [modifier, bit] : bits)
        if ((state & bit) != 0)
            modifiers |= modifier;
    return modifiers;
}

std::uint32_t X11Keyboard::plainKeysym(std::uint8_t keycode) const {
    if (keycode < mapping_.firstKeycode)
        return 0;
    const auto keysyms = keysymsOf(static_cast<std::size_t>(keycode - mapping_.firstKeycode));
    return keysyms.empty() ? 0 : keysyms.front();
}

bool X11Keyboard::hasCapsLock(std::uint16_t state) {
    return (state & kCapsLockState) != 0;
}

/// A key may say the same in several layouts, and other keys on some high level: those are meant
/// that say it in the first layout, plain or, as keypads do, on the second level.
std::vector<std::uint8_t> X11Keyboard::keycodesOf(std::uint32_t keysym) const {
    constexpr std::size_t kPairOfLevels = 2;
    const std::size_t width = mapping_.keysymsPerKeycode;
    std::vector<std::uint8_t> keycodes;
    for (std::size_t level = 0; level < width && keycodes.empty(); level += kPairOfLevels)
        for (std::size_t key = 0; (key + 1) * width <= mapping_.keysyms.size(); ++key)
            if (contains(keysymsOf(key).subspan(level, std::min(kPairOfLevels, width - level)),
                         keysym))
                keycodes.push_back(static_cast<std::uint8_t>(mapping_.firstKeycode + key));
    return keycodes;
}

std::span<const std::uint32_t> X11Keyboard::keysymsOf(std::size_t key) const {
    const std::size_t width = mapping_.keysymsPerKeycode;
    if ((key + 1) * width > mapping_.keysyms.size())
        return {};
    return std::span(mapping_.keysyms).subspan(key * width, width);
}

bool X11Keyboard::hasKeysym(std::uint8_t keycode, std::uint32_t keysym) const {
    return keycode >= mapping_.firstKeycode &&
           contains(keysymsOf(static_cast<std::size_t>(keycode - mapping_.firstKeycode)), keysym);
}

std::uint16_t X11Keyboard::modifierOf(std::uint32_t keysym) const {
    for (std::size_t modifier = 0; modifier < mapping_.modifierKeys.size(); ++modifier)
        for (const std::uint8_t keycode : mapping_.modifierKeys[modifier])
            if (keycode != 0 && hasKeysym(keycode, keysym))
                return static_cast<std::uint16_t>(1U << modifier);
    return 0;
}

std::optional<std::uint16_t> X11Keyboard::stateFor(std::uint32_t modifiers) const {
    const auto either = [this](std::uint32_t left, std::uint32_t right) {
        const std::uint16_t found = modifierOf(left);
        return found != 0 ? found : modifierOf(right);
    };
    const std::initializer_list<std::pair<std::uint32_t, std::uint16_t>> states{
        {kShiftModifier, kShiftState},
        {kControlModifier, kControlState},
        {kCommandModifier, either(kSuperLeftKeysym, kSuperRightKeysym)},
        {kOptionModifier, either(kAltLeftKeysym, kAltRightKeysym)}};
    std::uint16_t state = 0;
    for (const auto& [modifier, bit] : states) {
        if ((modifiers & modifier) == 0)
            continue;
        if (bit == 0)
            return std::nullopt;
        state |= bit;
    }
    return state;
}

/// Every way in which the lock keys can be on and off.
std::vector<std::uint16_t> X11Keyboard::lockStates() const {
    std::vector<std::uint16_t> states{0};
    for (const std::uint16_t lock :
         {kCapsLockState, modifierOf(kNumLockKeysym), modifierOf(kScrollLockKeysym)}) {
        const std::size_t count = states.size();
        for (std::size_t index = 0; index < count; ++index)
            if (const auto both = static_cast<std::uint16_t>(states[index] | lock);
                !contains(states, both))
                states.push_back(both);
    }
    return states;
}

} // namespace orvanta
