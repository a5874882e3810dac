// What holds for any settings, any profile and any text.

#include "core/persistence/ProfileStore.h"
#include "core/persistence/SettingsStore.h"
#include "tests/core/persistence/ArbitraryRecords.h"
#include "tests/support/MemoryUserDefaults.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace orvanta {
namespace {

RC_GTEST_PROP(SettingsStore, GivesTheNextRunAllThatWasSaved, ()) {
    test::MemoryUserDefaults defaults;
    const AppSettingsByKey settings = test::anySettingsByKey();
    SettingsStore store(defaults);
    for (const auto& [key, record] : settings)
        store.save(key, record);
    RC_ASSERT(store.loadAll() == settings);
    RC_ASSERT(SettingsStore(defaults).loadAll() == settings);
}

RC_GTEST_PROP(SettingsStore, StoresTheSameBytesWhicheverWayItCameToThem, ()) {
    test::MemoryUserDefaults stepwise;
    test::MemoryUserDefaults anew;
    SettingsStore store(stepwise);
    AppSettingsByKey expected;
    const auto changes = *rc::gen::inRange(1, 10);
    for (int k = 0; k < changes; ++k) {
        const std::string key = *rc::gen::element<std::string>("a", "b", "c");
        if (test::anyBool()) {
            const AppSettings settings = test::anySettings();
            store.save(key, settings);
            expected.insert_or_assign(key, settings);
        } else {
            store.remove(key);
            expected.erase(key);
        }
    }
    SettingsStore other(anew);
    other.remove("none");
    for (const auto& [key, record] : expected)
        other.save(key, record);
    RC_ASSERT(stepwise.data(SettingsStore::settingsKey) == anew.data(SettingsStore::settingsKey));
}

RC_GTEST_PROP(ProfileStore, GivesTheNextRunAllThatWasSaved, ()) {
    test::MemoryUserDefaults defaults;
    std::vector<AudioProfile> profiles(*rc::gen::inRange<std::size_t>(0, 4));
    ProfileStore store(defaults);
    for (std::size_t k = 0; k < profiles.size(); ++k) {
        profiles[k] = test::anyProfile();
        profiles[k].id.bytes[0] = static_cast<std::uint8_t>(k);
        store.save(profiles[k]);
    }
    RC_ASSERT(store.loadAll() == profiles);
    RC_ASSERT(ProfileStore(defaults).loadAll() == profiles);
}

} // namespace
} // namespace orvanta
