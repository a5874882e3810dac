#include "core/persistence/AudioProfile.h"

#include <nlohmann/json.hpp>

namespace orvanta {
namespace {

UUID decodedUUID(const coding::JSON& value) {
    const auto id = UUID::from(coding::decodedString(value));
    if (!id)
        throw coding::CodingError("a text is no UUID");
    return *id;
}

} // namespace

AppSettingsByKey decodedAppSettings(const coding::JSON& object) {
    if (!object.is_object())
        throw coding::CodingError("settings by application are no object");
    AppSettingsByKey settings;
    for (const auto& [key, value] : object.items())
        settings.insert_or_assign(key, value.get<AppSettings>());
    return settings;
}

void to_json(coding::JSON& json, const AudioProfile& profile) {
    json = coding::JSON::object();
    json["id"] = profile.id.uuidString();
    json["name"] = profile.name;
    json["icon"] = profile.icon;
    json["createdAt"] = coding::encoded(profile.createdAt.timeIntervalSinceReferenceDate);
    auto& applications = json["appSettings"] = coding::JSON::object();
    // They differ, so none has to be looked for, which would take as long as there are many.
    for (const auto& [key, settings] : profile.appSettings)
        applications.get_ref<coding::JSON::object_t&>().emplace_back(key, settings);
    json["globalSettings"] = profile.globalSettings;
}

void from_json(const coding::JSON& json, AudioProfile& profile) {
    profile = AudioProfile{
        .id = decodedUUID(coding::required(json, "id")),
        .name = coding::decodedString(coding::required(json, "name")),
        .icon = coding::decodedString(coding::required(json, "icon")),
        .createdAt = Date(coding::decodedDouble(coding::required(json, "createdAt"))),
        .appSettings = decodedAppSettings(coding::required(json, "appSettings")),
        .globalSettings = coding::required(json, "globalSettings").get<GlobalSettings>(),
    };
}

} // namespace orvanta
