#pragma once

#include "core/dsp/CompressorPreset.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace orvanta {

/// What the panel lets people set of a compressor's band.
enum class CompressorQuantity : std::uint8_t { threshold, ratio, makeup };

/// A slider for one of them: what it is called and where it may stand. The value is the preset's.
struct CompressorField {
    CompressorQuantity quantity;
    std::string_view label;
    float minimum;
    float maximum;
    float step;

    /// "Thresh compressor".
    [[nodiscard]] std::string accessibleLabel() const;
    /// "-14 dB", "2:1".
    [[nodiscard]] std::string readOut(float value) const;
    /// "-14 dB", "2 to 1".
    [[nodiscard]] std::string accessibleValue(float value) const;

    [[nodiscard]] float valueIn(const CompressorBandSettings& band) const noexcept;
    void setValueIn(CompressorBandSettings& band, float value) const noexcept;
};

/// From top to bottom.
inline constexpr std::array<CompressorField, 3> kCompressorFields{{
    {CompressorQuantity::threshold, "Thresh", -60.0F, 0.0F, 1.0F},
    {CompressorQuantity::ratio, "Ratio", 1.0F, 20.0F, 0.5F},
    {CompressorQuantity::makeup, "Makeup", 0.0F, 24.0F, 0.5F},
}};

/// A band's bar of gain reduction is full at so many dB.
inline constexpr float kFullReductionDB = 24.0F;

/// Share of the bar, 0 to 1, for a reduction in dB.
[[nodiscard]] double reductionShare(float reductionDB) noexcept;

/// What a menu shows for a setting: the name of the named preset that it equals, else "Custom".
[[nodiscard]] std::string_view compressorPresetName(const CompressorPreset& preset);

} // namespace orvanta
