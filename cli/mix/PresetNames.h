#pragma once

#include "core/dsp/CompressorPreset.h"
#include "core/dsp/EQPreset.h"

#include <string>

namespace orvanta::cli {

/// The preset's name, "flat", or the ten gains in dB.
[[nodiscard]] std::string eqName(const EQPreset& preset);

/// The preset's name, "Off" among them, or "custom".
[[nodiscard]] std::string compressorName(const CompressorPreset& preset);

} // namespace orvanta::cli
