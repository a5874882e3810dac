#pragma once

#include "app/themes/ThemePalette.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvanta {

enum class ThemeChoice : std::uint8_t { classic, meridane };

/// In the order in which they are offered.
inline constexpr std::array kThemeChoices{ThemeChoice::classic, ThemeChoice::meridane};

/// What is stored: "classic" and "meridane".
[[nodiscard]] std::string_view rawValue(ThemeChoice choice) noexcept;

/// None for any other text.
[[nodiscard]] std::optional<ThemeChoice> themeChoiceFrom(std::string_view rawValue) noexcept;

/// For people to read.
[[nodiscard]] std::string_view displayName(ThemeChoice choice) noexcept;

/// The next in order; the first after the last.
[[nodiscard]] ThemeChoice nextAfter(ThemeChoice choice) noexcept;

[[nodiscard]] const ThemePalette& paletteOf(ThemeChoice choice) noexcept;

} // namespace orvanta
