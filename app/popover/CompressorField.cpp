#include "app/popover/CompressorField.h"

#include <fmt/format.h>

#include <algorithm>

namespace orvanta {

std::string CompressorField::accessibleLabel() const {
    return fmt::format("{} compressor", label);
}

std::string CompressorField::readOut(float value) const {
    return quantity == CompressorQuantity::ratio ? fmt::format("{:.0f}:1", value)
                                                 : fmt::format("{:+.0f} dB", value);
}

std::string CompressorField::accessibleValue(float value) const {
    return quantity == CompressorQuantity::ratio ? fmt::format("{:.0f} to 1", value)
                                                 : fmt::format("{:+.0f} dB", value);
}

float CompressorField::valueIn(const CompressorBandSettings& band) const noexcept {
    switch (quantity) {
    case CompressorQuantity::threshold:
        return band.threshold;
    case CompressorQuantity::ratio:
        return band.ratio;
    case CompressorQuantity::makeup:
        break;
    }
    return band.makeupGain;
}

void CompressorField::setValueIn(CompressorBandSettings& band, float value) const noexcept {
    switch (quantity) {
    case CompressorQuantity::threshold:
        band.threshold = value;
        return;
    case CompressorQuantity::ratio:
        band.ratio = value;
        return;
    case CompressorQuantity::makeup:
        band.makeupGain = value;
        return;
    }
}

double reductionShare(float reductionDB) noexcept {
    const auto share = static_cast<double>(reductionDB / kFullReductionDB);
    return share > 0.0 ? std::min(share, 1.0) : 0.0;
}

std::string_view compressorPresetName(const CompressorPreset& preset) {
    const auto presets = CompressorPreset::allPresets();
    const auto found = std::find_if(presets.begin(), presets.end(),
                                    [&](const auto& named) { return named.preset == preset; });
    return found != presets.end() ? found->name : "Custom";
}

} // namespace orvanta
