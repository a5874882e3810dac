#pragma once

#include "core/persistence/coding/JSONCoding.h"
#include "core/recording/RecordingFormat.h"
#include "core/recording/RecordingMode.h"

namespace orvanta {

/// What a profile keeps besides the applications.
struct GlobalSettings {
    float masterVolume;
    bool isMasterMuted;
    RecordingFormat recordingFormat;
    RecordingMode recordingMode;

    friend bool operator==(const GlobalSettings&, const GlobalSettings&) = default;
};

/// Written with the fields' names as keys, in their order. `from_json` throws a `CodingError` when
/// one is missing or of another type.
void to_json(coding::JSON& json, const GlobalSettings& settings);
void from_json(const coding::JSON& json, GlobalSettings& settings);

} // namespace orvanta
