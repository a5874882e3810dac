#pragma once

#include "core/persistence/AppSettings.h"

#include <map>
#include <string>

namespace orvanta {

/// Settings by the settings key of their application: its bundle identifier, or its name where it
/// has none.
using AppSettingsByKey = std::map<std::string, AppSettings, std::less<>>;

} // namespace orvanta
