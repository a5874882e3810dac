#pragma once

#include "core/persistence/AppSettingsByKey.h"
#include "core/persistence/AudioProfile.h"

#include <string_view>
#include <vector>

namespace orvanta {

/// What a stored value tells; empty when any of it cannot be read. Never throws for what is
/// stored, whatever it is.
[[nodiscard]] AppSettingsByKey decodedSettings(std::string_view stored);
[[nodiscard]] std::vector<AudioProfile> decodedProfiles(std::string_view stored);

} // namespace orvanta
