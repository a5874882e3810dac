#include "core/persistence/ProfileStore.h"

#include "tests/core/persistence/GoldenFile.h"
#include "tests/core/persistence/SampleRecords.h"
#include "tests/support/MemoryUserDefaults.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvanta {
namespace {

using test::fullProfile;
using test::plainProfile;
using Profiles = std::vector<AudioProfile>;

constexpr const char* kProfilesKey = "com.meridane.orvanta.audioProfiles";

struct ProfileStoreTest : testing::Test {
    test::MemoryUserDefaults defaults;
    ProfileStore store{defaults};

    /// What the next run of the program will find.
    [[nodiscard]] Profiles stored() { return ProfileStore(defaults).loadAll(); }
};

TEST_F(ProfileStoreTest, IsEmptyAtAFirstStart) {
    EXPECT_TRUE(store.loadAll().empty());
    EXPECT_EQ(store.load(plainProfile().id), std::nullopt);
    EXPECT_TRUE(defaults.writes.empty());
}

TEST_F(ProfileStoreTest, StoresProfilesInTheOrderInWhichTheyCame) {
    store.save(plainProfile());
    store.save(fullProfile());
    EXPECT_EQ(defaults.data(kProfilesKey), test::golden("stored-profiles.json"));
    EXPECT_EQ(stored(), (Profiles{plainProfile(), fullProfile()}));
}

TEST_F(ProfileStoreTest, KeepsTheOrderOfLaterRuns) {
    store.save(plainProfile(2));
    ProfileStore next(defaults);
    next.save(plainProfile(1));
    EXPECT_EQ(stored(), (Profiles{plainProfile(2), plainProfile(1)}));
}

TEST_F(ProfileStoreTest, ReplacesAProfileWhereItStands) {
    for (const int number : {1, 2, 3})
        store.save(plainProfile(number));
    AudioProfile renamed = plainProfile(2);
    renamed.name = "Morning";
    store.save(renamed);
    const Profiles expected{plainProfile(1), renamed, plainProfile(3)};
    EXPECT_EQ(store.loadAll(), expected);
    EXPECT_EQ(stored(), expected);
    EXPECT_EQ(store.load(renamed.id), renamed);
}

TEST_F(ProfileStoreTest, KeepsTwoOfOneName) {
    store.save(plainProfile(1));
    store.save(plainProfile(2));
    EXPECT_EQ(stored().size(), 2U);
}

TEST_F(ProfileStoreTest, DeletesAProfileAndKeepsTheOrderOfTheOthers) {
    for (const int number : {1, 2, 3})
        store.save(plainProfile(number));
    store.deleteProfile(plainProfile(2).id);
    EXPECT_EQ(stored(), (Profiles{plainProfile(1), plainProfile(3)}));
}

TEST_F(ProfileStoreTest, DeletesEveryProfileOfOneIdentity) {
    const std::string one = test::golden("profile-plain.json");
    defaults.setData(kProfilesKey,
                     "[" + one + "," + test::golden("profile-full.json") + "," + one + "]");
    store.deleteProfile(plainProfile().id);
    EXPECT_EQ(stored(), (Profiles{fullProfile()}));
}

TEST_F(ProfileStoreTest, StoresTheListAnewWhenThereIsNothingToDelete) {
    store.save(plainProfile(1));
    const auto before = defaults.data(kProfilesKey);
    store.deleteProfile(plainProfile(2).id);
    EXPECT_EQ(defaults.writes[kProfilesKey], 2);
    EXPECT_EQ(defaults.data(kProfilesKey), before);
}

TEST_F(ProfileStoreTest, LosesAllToOneProfileThatCannotBeRead) {
    for (const char* broken : {"", "[", "{}", "[{}]", "[null]"}) {
        defaults.setData(kProfilesKey, broken);
        ProfileStore next(defaults);
        EXPECT_TRUE(next.loadAll().empty()) << broken;
        next.save(fullProfile());
        EXPECT_EQ(stored(), (Profiles{fullProfile()})) << broken;
    }
    defaults.setData(kProfilesKey, "[" + test::golden("profile-plain.json") + ",{}]");
    EXPECT_TRUE(stored().empty());
}

TEST_F(ProfileStoreTest, KeepsTheTimeOfMakingToTheLastBit) {
    for (const double seconds : {0.1, 1.0 / 3, 817458896.12345678, -63114076800.0, 5e-324, 1e300,
                                 std::numeric_limits<double>::max()}) {
        AudioProfile profile = plainProfile();
        profile.createdAt = Date(seconds);
        store.save(profile);
        EXPECT_EQ(stored().front().createdAt.timeIntervalSinceReferenceDate, seconds);
    }
}

TEST_F(ProfileStoreTest, NeverReadsWhatItKnowsAlready) {
    ProfileStore(defaults).save(plainProfile(1));
    EXPECT_EQ(store.loadAll().size(), 1U);
    ProfileStore(defaults).save(plainProfile(2));
    EXPECT_EQ(store.loadAll().size(), 1U);
}

TEST_F(ProfileStoreTest, GoesOnInMemoryWhenAProfileHasNoJSON) {
    store.save(plainProfile(1));
    AudioProfile odd = plainProfile(2);
    odd.name = "\xff";
    store.save(odd);
    EXPECT_EQ(store.loadAll().size(), 2U);
    EXPECT_EQ(stored(), (Profiles{plainProfile(1)}));
}

} // namespace
} // namespace orvanta
