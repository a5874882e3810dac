#include "core/persistence/AppSettings.h"

#include <nlohmann/json.hpp>

namespace orvanta {

void to_json(coding::JSON& json, const AppSettings& settings) {
    json = coding::JSON::object();
    json["volume"] = coding::encoded(settings.volume);
    json["isMuted"] = settings.isMuted;
    if (settings.outputDeviceUID)
        json["outputDeviceUID"] = *settings.outputDeviceUID;
    json["isTapped"] = settings.isTapped;
    if (settings.eqPreset)
        json["eqPreset"] = *settings.eqPreset;
    json["balance"] = coding::encoded(settings.balance);
    if (settings.compressorPreset)
        json["compressorPreset"] = *settings.compressorPreset;
    json["limiterEnabled"] = settings.limiterEnabled;
    json["normalizationEnabled"] = settings.normalizationEnabled;
    json["stereoWidth"] = coding::encoded(settings.stereoWidth);
    json["crossfeedAmount"] = coding::encoded(settings.crossfeedAmount);
}

void from_json(const coding::JSON& json, AppSettings& settings) {
    const auto number = [&](const char* key) {
        return coding::decodedFloat(coding::required(json, key));
    };
    const auto boolean = [&](const char* key) {
        return coding::decodedBool(coding::required(json, key));
    };
    AppSettings read{
        .volume = number("volume"),
        .isMuted = boolean("isMuted"),
        .isTapped = boolean("isTapped"),
        .balance = number("balance"),
        .limiterEnabled = boolean("limiterEnabled"),
        .normalizationEnabled = boolean("normalizationEnabled"),
        .stereoWidth = number("stereoWidth"),
        .crossfeedAmount = number("crossfeedAmount"),
    };
    if (const auto* const device = coding::optional(json, "outputDeviceUID"))
        read.outputDeviceUID = coding::decodedString(*device);
    if (const auto* const equaliser = coding::optional(json, "eqPreset"))
        read.eqPreset = equaliser->get<EQPreset>();
    if (const auto* const compressor = coding::optional(json, "compressorPreset"))
        read.compressorPreset = compressor->get<CompressorPreset>();
    settings = std::move(read);
}

} // namespace orvanta
