#pragma once

#include "core/persistence/AppSettingsByKey.h"
#include "core/persistence/Date.h"
#include "core/persistence/GlobalSettings.h"
#include "core/persistence/coding/JSONCoding.h"
#include "core/platform/UUID.h"

#include <string>

namespace orvanta {

/// A named snapshot of the whole mixer. Who makes one gives it its identity, which stays.
struct AudioProfile {
    UUID id;
    std::string name;
    std::string icon; ///< name of a symbol, such as "slider.horizontal.3"
    Date createdAt;
    AppSettingsByKey appSettings;
    GlobalSettings globalSettings;

    friend bool operator==(const AudioProfile&, const AudioProfile&) = default;
};

/// Written with the fields' names as keys, in their order. `from_json` throws a `CodingError` when
/// one is missing or of another type.
void to_json(coding::JSON& json, const AudioProfile& profile);
void from_json(const coding::JSON& json, AudioProfile& profile);

/// A map as the object that it is stored as.
[[nodiscard]] AppSettingsByKey decodedAppSettings(const coding::JSON& object);

} // namespace orvanta
