#pragma once

#include "core/dsp/EQPreset.h"

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace orvanta {

/// A heading of the presets menu and what stands under it.
struct EQPresetGroup {
    std::string_view heading;
    std::size_t first; ///< among `EQPreset::allNamedPresets`
    std::size_t count;

    [[nodiscard]] std::span<const NamedEQPreset> presets() const noexcept {
        return EQPreset::allNamedPresets().subspan(first, count);
    }
};

/// In the menu's order; together they are all named presets.
inline constexpr std::array<EQPresetGroup, 3> kEQPresetGroups{{
    {.heading = "Genre", .first = 0, .count = 7},
    {.heading = "Context", .first = 7, .count = 3},
    {.heading = "Voice & Utility", .first = 10, .count = 2},
}};

} // namespace orvanta
