#include "platform/qt/keys/X11KeyDownEvent.h"

#include <QChar>
#include <QString>
#include <array>
#include <optional>
#include <utility>

namespace orvanta {
namespace {

constexpr std::array<std::pair<std::uint32_t, std::uint64_t>, 4> kModifierFlags{{
    {kShiftModifier, NSEventModifierFlagShift},
    {kControlModifier, NSEventModifierFlagControl},
    {kOptionModifier, NSEventModifierFlagOption},
    {kCommandModifier, NSEventModifierFlagCommand},
}};

/// Keysyms are Latin-1's numbers where Latin-1 has the character, and for most others Unicode's
/// behind a mark.
std::optional<char32_t> characterOf(std::uint32_t keysym) {
    constexpr std::uint32_t kUnicodeMark = 0x0100'0000;
    constexpr std::uint32_t kLastCharacter = 0x10FFFF;
    if ((keysym >= 0x20 && keysym <= 0x7E) || (keysym >= 0xA0 && keysym <= 0xFF))
        return keysym;
    if (keysym > kUnicodeMark && keysym <= kUnicodeMark + kLastCharacter)
        return keysym - kUnicodeMark;
    return std::nullopt;
}

} // namespace

KeyDownEvent x11KeyDownEvent(const X11Keyboard& keyboard, std::uint8_t keycode,
                             std::uint16_t state) {
    KeyDownEvent event;
    const std::uint32_t modifiers = keyboard.modifiersIn(state);
    for (const auto& [modifier, flag] : kModifierFlags)
        if ((modifiers & modifier) != 0)
            event.modifierFlags |= flag;
    if (auto character = characterOf(keyboard.plainKeysym(keycode))) {
        if (X11Keyboard::hasCapsLock(state))
            character = QChar::toUpper(*character);
        event.charactersIgnoringModifiers = QString::fromUcs4(&*character, 1).toStdString();
    }
    return event;
}

} // namespace orvanta
