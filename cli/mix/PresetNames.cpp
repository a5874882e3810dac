#include "cli/mix/PresetNames.h"

#include <fmt/format.h>

namespace orvanta::cli {

std::string eqName(const EQPreset& preset) {
    if (preset.isFlat())
        return "flat";
    if (const auto name = preset.matchedPresetName())
        return std::string(*name);
    return fmt::format("{}", fmt::join(preset.gains, " "));
}

std::string compressorName(const CompressorPreset& preset) {
    for (const NamedCompressorPreset& named : CompressorPreset::allPresets())
        if (named.preset == preset)
            return std::string(named.name);
    return "custom";
}

} // namespace orvanta::cli
