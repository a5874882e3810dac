#include "core/persistence/SettingsStore.h"

#include "tests/core/persistence/GoldenFile.h"
#include "tests/core/persistence/SampleRecords.h"
#include "tests/support/MemoryUserDefaults.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orvanta {
namespace {

using test::fullSettings;
using test::MemoryUserDefaults;
using test::plainSettings;

constexpr const char* kSettingsKey = "com.meridane.orvanta.appSettings";
constexpr const char* kFlagKey = "com.meridane.orvanta.autoTapEnabled";

struct SettingsStoreTest : testing::Test {
    MemoryUserDefaults defaults;
    SettingsStore store{defaults};

    /// What the next run of the program will find.
    [[nodiscard]] AppSettingsByKey stored() { return SettingsStore(defaults).loadAll(); }
};

TEST_F(SettingsStoreTest, IsEmptyAtAFirstStart) {
    EXPECT_TRUE(store.loadAll().empty());
    EXPECT_EQ(store.load("a"), std::nullopt);
    EXPECT_EQ(store.loadAutoTapEnabled(), std::nullopt);
    EXPECT_TRUE(defaults.writes.empty());
}

TEST_F(SettingsStoreTest, TellsAFlagThatIsOffFromOneThatWasNeverSet) {
    store.saveAutoTapEnabled(false);
    EXPECT_EQ(store.loadAutoTapEnabled(), false);
    store.saveAutoTapEnabled(true);
    EXPECT_EQ(SettingsStore(defaults).loadAutoTapEnabled(), true);
    EXPECT_TRUE(defaults.boolean(kFlagKey));
}

TEST_F(SettingsStoreTest, StoresTheFirstRecordAsAMapOfOne) {
    store.save("com.spotify.Client", plainSettings());
    EXPECT_EQ(defaults.data(kSettingsKey), test::golden("stored-settings.json"));
}

TEST_F(SettingsStoreTest, KeepsWhatWasStoredForOthers) {
    store.save("a", plainSettings(0.5F));
    SettingsStore next(defaults);
    next.save("b", fullSettings());
    EXPECT_EQ(stored(), (AppSettingsByKey{{"a", plainSettings(0.5F)}, {"b", fullSettings()}}));
}

TEST_F(SettingsStoreTest, ReplacesARecordAsAWhole) {
    store.save("a", fullSettings());
    store.save("a", plainSettings());
    EXPECT_EQ(store.load("a"), plainSettings());
    EXPECT_EQ(stored(), (AppSettingsByKey{{"a", plainSettings()}}));
}

TEST_F(SettingsStoreTest, RemovesARecordForGood) {
    store.save("a", plainSettings());
    store.save("b", plainSettings());
    store.remove("a");
    EXPECT_EQ(store.load("a"), std::nullopt);
    EXPECT_EQ(stored(), (AppSettingsByKey{{"b", plainSettings()}}));
}

TEST_F(SettingsStoreTest, StoresTheMapAnewWhenThereIsNothingToRemove) {
    store.save("a", plainSettings());
    const auto before = defaults.data(kSettingsKey);
    store.remove("b");
    EXPECT_EQ(defaults.writes[kSettingsKey], 2);
    EXPECT_EQ(defaults.data(kSettingsKey), before);
}

TEST_F(SettingsStoreTest, StoresAnEmptyMapWhenTheFirstThingIsARemoval) {
    store.remove("a");
    EXPECT_EQ(defaults.data(kSettingsKey), "{}");
}

TEST_F(SettingsStoreTest, LosesAllToOneRecordThatCannotBeRead) {
    store.save("a", plainSettings());
    store.save("b", plainSettings());
    std::string json = *defaults.data(kSettingsKey);
    json.erase(json.rfind(R"(,"stereoWidth":1)"), std::string_view(R"(,"stereoWidth":1)").size());
    defaults.setData(kSettingsKey, json);

    SettingsStore next(defaults);
    EXPECT_TRUE(next.loadAll().empty());
    EXPECT_EQ(defaults.data(kSettingsKey), json) << "reading must not touch what is stored";
    next.save("c", fullSettings());
    EXPECT_EQ(stored(), (AppSettingsByKey{{"c", fullSettings()}}));
}

TEST_F(SettingsStoreTest, ReadsAgainWhileNothingIsStored) {
    EXPECT_TRUE(store.loadAll().empty());
    SettingsStore(defaults).save("a", plainSettings());
    EXPECT_EQ(store.load("a"), plainSettings());
}

TEST_F(SettingsStoreTest, NeverReadsWhatItKnowsAlready) {
    SettingsStore(defaults).save("a", plainSettings());
    EXPECT_EQ(store.load("a"), plainSettings());
    SettingsStore(defaults).save("a", fullSettings());
    const int reads = defaults.reads[kSettingsKey];
    EXPECT_EQ(store.load("a"), plainSettings());
    EXPECT_EQ(store.loadAll().size(), 1U);
    EXPECT_EQ(defaults.reads[kSettingsKey], reads);
}

TEST_F(SettingsStoreTest, GoesOnInMemoryWhenARecordHasNoJSON) {
    store.save("a", plainSettings(0.5F));
    store.save("a", plainSettings(std::nanf("")));
    store.save("b", plainSettings());
    EXPECT_TRUE(std::isnan(store.load("a")->volume));
    EXPECT_EQ(store.load("b"), plainSettings());
    EXPECT_EQ(stored(), (AppSettingsByKey{{"a", plainSettings(0.5F)}}));
    // And stores again once it has.
    store.save("a", plainSettings(0.25F));
    EXPECT_EQ(stored(), (AppSettingsByKey{{"a", plainSettings(0.25F)}, {"b", plainSettings()}}));
}

TEST_F(SettingsStoreTest, StoresNothingUnderANameThatIsNoText) {
    store.save("\xff", plainSettings());
    EXPECT_EQ(store.load("\xff"), plainSettings());
    EXPECT_EQ(defaults.data(kSettingsKey), std::nullopt);
}

TEST_F(SettingsStoreTest, DoesNotTakeAValueOfAnotherKindForItsOwn) {
    defaults.setString(kSettingsKey, R"({"a":1})");
    EXPECT_TRUE(store.loadAll().empty());
    defaults.setString(kFlagKey, "yes");
    EXPECT_EQ(store.loadAutoTapEnabled(), false);
}

} // namespace
} // namespace orvanta
