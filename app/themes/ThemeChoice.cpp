#include "app/themes/ThemeChoice.h"

#include <algorithm>

namespace orvanta {

std::string_view rawValue(ThemeChoice choice) noexcept {
    return choice == ThemeChoice::classic ? "classic" : "meridane";
}

std::optional<ThemeChoice> themeChoiceFrom(std::string_view text) noexcept {
    const auto* const found =
        std::find_if(kThemeChoices.begin(), kThemeChoices.end(),
                     [text](ThemeChoice choice) { return rawValue(choice) == text; });
    if (found == kThemeChoices.end())
        return std::nullopt;
    return *found;
}

std::string_view displayName(ThemeChoice choice) noexcept {
    return choice == ThemeChoice::classic ? "Classic" : "Meridane";
}

ThemeChoice nextAfter(ThemeChoice choice) noexcept {
    const auto place = static_cast<std::size_t>(choice);
    return kThemeChoices[(place + 1) % kThemeChoices.size()];
}

const ThemePalette& paletteOf(ThemeChoice choice) noexcept {
    return choice == ThemeChoice::classic ? ThemePalette::classic() : ThemePalette::meridane();
}

} // namespace orvanta
