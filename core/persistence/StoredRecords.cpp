#include "core/persistence/StoredRecords.h"

#include "core/persistence/coding/JSONText.h"

#include <nlohmann/json.hpp>

namespace orvanta {

AppSettingsByKey decodedSettings(std::string_view stored) {
    try {
        return decodedAppSettings(coding::parsed(stored));
    } catch (const coding::CodingError&) {
        return {};
    }
}

std::vector<AudioProfile> decodedProfiles(std::string_view stored) {
    try {
        const coding::JSON json = coding::parsed(stored);
        std::vector<AudioProfile> profiles;
        for (const coding::JSON& profile : coding::decodedArray(json))
            profiles.push_back(profile.get<AudioProfile>());
        return profiles;
    } catch (const coding::CodingError&) {
        return {};
    }
}

} // namespace orvanta
