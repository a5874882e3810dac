#pragma once

#include "core/persistence/AppSettingsByKey.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvanta {

/// Remembers what the user has set for each application, and whether new applications are tapped
/// by themselves. No operation reports an error. Called from one thread.
class SettingsStoring {
public:
    SettingsStoring() = default;
    SettingsStoring(const SettingsStoring&) = delete;
    SettingsStoring& operator=(const SettingsStoring&) = delete;
    virtual ~SettingsStoring() = default;

    /// Replaces what was saved for `bundleID` as a whole.
    virtual void save(std::string_view bundleID, const AppSettings& settings) = 0;
    /// Absent for an application that nothing was saved for.
    [[nodiscard]] virtual std::optional<AppSettings> load(std::string_view bundleID) = 0;
    [[nodiscard]] virtual AppSettingsByKey loadAll() = 0;
    virtual void remove(std::string_view bundleID) = 0;

    virtual void saveAutoTapEnabled(bool value) = 0;
    /// Absent until the first save: a flag that was never set is not one that is off.
    [[nodiscard]] virtual std::optional<bool> loadAutoTapEnabled() = 0;
};

} // namespace orvanta
