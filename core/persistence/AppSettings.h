#pragma once

#include "core/dsp/CompressorPreset.h"
#include "core/dsp/EQPreset.h"
#include "core/persistence/coding/JSONCoding.h"

#include <optional>
#include <string>

namespace orvanta {

/// What the user has set for one application. The ranges belong to the commands that set it: any
/// value is kept.
struct AppSettings {
    float volume; ///< 1 is the program's own
    bool isMuted;
    std::optional<std::string> outputDeviceUID = std::nullopt; ///< absent: the default output
    bool isTapped;
    std::optional<EQPreset> eqPreset = std::nullopt;
    float balance; ///< -1 is left, 1 is right
    std::optional<CompressorPreset> compressorPreset = std::nullopt;
    bool limiterEnabled;
    bool normalizationEnabled;
    float stereoWidth; ///< 1 is as it comes
    float crossfeedAmount;

    friend bool operator==(const AppSettings&, const AppSettings&) = default;
};

/// Written with the fields' names as keys, in their order; an absent one is left out. `from_json`
/// throws a `CodingError` when any but the three optional ones is missing or one is of another
/// type.
void to_json(coding::JSON& json, const AppSettings& settings);
void from_json(const coding::JSON& json, AppSettings& settings);

} // namespace orvanta
