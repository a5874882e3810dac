#include "core/persistence/GlobalSettings.h"

#include <nlohmann/json.hpp>

namespace orvanta {

void to_json(coding::JSON& json, const GlobalSettings& settings) {
    json = coding::JSON::object();
    json["masterVolume"] = coding::encoded(settings.masterVolume);
    json["isMasterMuted"] = settings.isMasterMuted;
    json["recordingFormat"] = settings.recordingFormat;
    json["recordingMode"] = settings.recordingMode;
}

void from_json(const coding::JSON& json, GlobalSettings& settings) {
    settings = GlobalSettings{
        .masterVolume = coding::decodedFloat(coding::required(json, "masterVolume")),
        .isMasterMuted = coding::decodedBool(coding::required(json, "isMasterMuted")),
        .recordingFormat = coding::required(json, "recordingFormat").get<RecordingFormat>(),
        .recordingMode = coding::required(json, "recordingMode").get<RecordingMode>(),
    };
}

} // namespace orvanta
