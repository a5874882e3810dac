#include "core/persistence/SettingsStore.h"

#include "core/persistence/StoredRecords.h"

#include <utility>

namespace orvanta {

SettingsStore::SettingsStore(UserDefaults& defaults) : defaults_(defaults) {}

void SettingsStore::save(std::string_view bundleID, const AppSettings& settings) {
    if (stored() == nullptr)
        cache_.emplace();
    Entry entry = entryOf(bundleID, settings);
    if (const auto known = cache_->find(bundleID); known != cache_->end())
        known->second = std::move(entry);
    else
        cache_->emplace(bundleID, std::move(entry));
    persist();
}

std::optional<AppSettings> SettingsStore::load(std::string_view bundleID) {
    const Entries* const entries = stored();
    if (entries == nullptr)
        return std::nullopt;
    const auto found = entries->find(bundleID);
    return found != entries->end() ? std::optional(found->second.settings) : std::nullopt;
}

AppSettingsByKey SettingsStore::loadAll() {
    AppSettingsByKey all;
    if (const Entries* const entries = stored())
        for (const auto& [bundleID, entry] : *entries)
            all.emplace_hint(all.end(), bundleID, entry.settings);
    return all;
}

void SettingsStore::remove(std::string_view bundleID) {
    if (stored() == nullptr)
        cache_.emplace();
    if (const auto known = cache_->find(bundleID); known != cache_->end())
        cache_->erase(known);
    persist();
}

void SettingsStore::saveAutoTapEnabled(bool value) {
    defaults_.setBoolean(autoTapKey, value);
}

std::optional<bool> SettingsStore::loadAutoTapEnabled() {
    if (!defaults_.has(autoTapKey))
        return std::nullopt;
    return defaults_.boolean(autoTapKey);
}

SettingsStore::Entry SettingsStore::entryOf(std::string_view bundleID, AppSettings settings) {
    StoredText member = storedTextOf(bundleID, settings);
    return {std::move(settings), std::move(member)};
}

SettingsStore::Entries* SettingsStore::stored() {
    if (!cache_) {
        const auto data = defaults_.data(settingsKey);
        if (!data)
            return nullptr;
        cache_.emplace();
        for (auto& [bundleID, settings] : decodedSettings(*data))
            cache_->emplace_hint(cache_->end(), bundleID, entryOf(bundleID, settings));
    }
    return &*cache_;
}

void SettingsStore::persist() {
    const auto textOf = [](const auto& entry) -> const StoredText& {
        return entry.second.member;
    };
    if (const StoredText json = joinedText('{', *cache_, '}', textOf))
        defaults_.setData(settingsKey, *json);
}

} // namespace orvanta
