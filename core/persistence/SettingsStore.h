#pragma once

#include "core/persistence/SettingsStoring.h"
#include "core/persistence/StoredText.h"
#include "core/platform/UserDefaults.h"

#include <map>
#include <optional>
#include <string>

namespace orvanta {

/// The settings of all applications, in the user's defaults. They travel in one value, a JSON
/// object by settings key, which every save stores anew; only the record that changed is encoded
/// for it. From the first read or save on, memory is the truth: what others write to the defaults
/// later is not noticed.
class SettingsStore final : public SettingsStoring {
public:
    static constexpr std::string_view settingsKey = "com.meridane.orvanta.appSettings";
    static constexpr std::string_view autoTapKey = "com.meridane.orvanta.autoTapEnabled";

    /// `defaults` outlives the store.
    explicit SettingsStore(UserDefaults& defaults);

    void save(std::string_view bundleID, const AppSettings& settings) override;
    [[nodiscard]] std::optional<AppSettings> load(std::string_view bundleID) override;

    /// Empty where nothing is stored, and where one record of what is stored cannot be read: then
    /// all of them count as lost, and the next save replaces them.
    [[nodiscard]] AppSettingsByKey loadAll() override;

    /// Stores the rest, also when there was nothing to remove.
    void remove(std::string_view bundleID) override;

    void saveAutoTapEnabled(bool value) override;
    [[nodiscard]] std::optional<bool> loadAutoTapEnabled() override;

private:
    struct Entry {
        AppSettings settings;
        StoredText member;
    };

    using Entries = std::map<std::string, Entry, std::less<>>;

    static Entry entryOf(std::string_view bundleID, AppSettings settings);

    /// Fills the cache from what is stored, if anything is. Null while there is nothing.
    Entries* stored();
    void persist();

    UserDefaults& defaults_;
    std::optional<Entries> cache_;
};

} // namespace orvanta
