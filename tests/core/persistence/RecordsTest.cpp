// What single records look like when they are stored.

#include "core/persistence/coding/JSONText.h"
#include "tests/core/persistence/GoldenFile.h"
#include "tests/core/persistence/SampleRecords.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace orvanta {
namespace {

using coding::CodingError;
using coding::JSON;
using namespace std::chrono_literals;

template <class Record>
std::string written(const Record& record) {
    return coding::text(JSON(record));
}

template <class Record>
Record read(std::string_view text) {
    return coding::parsed(text).get<Record>();
}

/// `record` as it is stored, but for one key.
template <class Record>
JSON without(const char* key, const Record& record) {
    JSON json(record);
    EXPECT_EQ(json.erase(key), 1U) << key;
    return json;
}

TEST(AppSettings, AreStoredAsTheseBytes) {
    EXPECT_EQ(written(test::plainSettings()), test::golden("settings-plain.json"));
    EXPECT_EQ(written(test::fullSettings()), test::golden("settings-full.json"));
}

TEST(AppSettings, AreReadFromTheseBytes) {
    EXPECT_EQ(read<AppSettings>(test::golden("settings-plain.json")), test::plainSettings());
    EXPECT_EQ(read<AppSettings>(test::golden("settings-full.json")), test::fullSettings());
}

TEST(AppSettings, LeaveOutTheKeysOfWhatIsAbsent) {
    const JSON json(test::plainSettings());
    for (const char* key : {"outputDeviceUID", "eqPreset", "compressorPreset"})
        EXPECT_FALSE(json.contains(key)) << key;
    EXPECT_EQ(json.get<AppSettings>(), test::plainSettings());
}

TEST(AppSettings, CannotBeReadWithoutAnyOfTheOtherKeys) {
    for (const char* key : {"volume", "isMuted", "isTapped", "balance", "limiterEnabled",
                            "normalizationEnabled", "stereoWidth", "crossfeedAmount"})
        EXPECT_THROW((void)without(key, test::fullSettings()).get<AppSettings>(), CodingError)
            << key;
}

TEST(AppSettings, TakeANullForAnAbsentValueWhereOneMayBeAbsent) {
    JSON json(test::fullSettings());
    json["outputDeviceUID"] = nullptr;
    EXPECT_EQ(json.get<AppSettings>().outputDeviceUID, std::nullopt);
    json["volume"] = nullptr;
    EXPECT_THROW((void)json.get<AppSettings>(), CodingError);
}

TEST(AppSettings, TakeNoTypeForAnother) {
    for (const char* key : {"volume", "isMuted", "outputDeviceUID", "eqPreset", "compressorPreset",
                            "crossfeedAmount"}) {
        JSON json(test::fullSettings());
        json[key] = JSON::array();
        EXPECT_THROW((void)json.get<AppSettings>(), CodingError) << key;
    }
}

TEST(AppSettings, PassOverKeysOfALaterVersion) {
    JSON json(test::plainSettings());
    json["reverb"] = 0.5;
    EXPECT_EQ(json.get<AppSettings>(), test::plainSettings());
}

TEST(GlobalSettings, AreStoredAsTheseBytes) {
    EXPECT_EQ(written(test::plainGlobalSettings()), test::golden("global-settings.json"));
    EXPECT_EQ(read<GlobalSettings>(test::golden("global-settings.json")),
              test::plainGlobalSettings());
}

TEST(GlobalSettings, NeedEveryKey) {
    for (const char* key : {"masterVolume", "isMasterMuted", "recordingFormat", "recordingMode"})
        EXPECT_THROW((void)without(key, test::plainGlobalSettings()).get<GlobalSettings>(),
                     CodingError)
            << key;
}

TEST(GlobalSettings, KnowNoOtherFormatsAndModes) {
    JSON json(test::plainGlobalSettings());
    json["recordingFormat"] = "mp3";
    EXPECT_THROW((void)json.get<GlobalSettings>(), CodingError);
    json = test::plainGlobalSettings();
    json["recordingMode"] = "Both";
    EXPECT_THROW((void)json.get<GlobalSettings>(), CodingError);
}

TEST(AudioProfile, IsStoredAsTheseBytes) {
    EXPECT_EQ(written(test::plainProfile()), test::golden("profile-plain.json"));
    EXPECT_EQ(written(test::fullProfile()), test::golden("profile-full.json"));
}

TEST(AudioProfile, IsReadFromTheseBytes) {
    EXPECT_EQ(read<AudioProfile>(test::golden("profile-plain.json")), test::plainProfile());
    EXPECT_EQ(read<AudioProfile>(test::golden("profile-full.json")), test::fullProfile());
}

TEST(AudioProfile, WithoutApplicationsHasAnEmptyObject) {
    const JSON json(test::plainProfile());
    EXPECT_EQ(coding::text(json.at("appSettings")), "{}");
    EXPECT_EQ(json.get<AudioProfile>(), test::plainProfile());
}

TEST(AudioProfile, NeedsEveryKey) {
    for (const char* key : {"id", "name", "icon", "createdAt", "appSettings", "globalSettings"})
        EXPECT_THROW((void)without(key, test::fullProfile()).get<AudioProfile>(), CodingError)
            << key;
}

TEST(AudioProfile, HasAUUIDAndAnObjectOfApplications) {
    JSON json(test::plainProfile());
    json["id"] = "one";
    EXPECT_THROW((void)json.get<AudioProfile>(), CodingError);
    json = test::plainProfile();
    json["appSettings"] = JSON::array();
    EXPECT_THROW((void)json.get<AudioProfile>(), CodingError);
}

TEST(AudioProfile, IsEqualWhenAllSixFieldsAre) {
    AudioProfile profile = test::plainProfile();
    profile.name = "Morning";
    EXPECT_NE(profile, test::plainProfile());
    profile = test::plainProfile();
    profile.createdAt.timeIntervalSinceReferenceDate += 1;
    EXPECT_NE(profile, test::plainProfile());
    EXPECT_EQ(test::plainProfile(), test::plainProfile());
}

TEST(Date, CountsSecondsSinceTheBeginningOf2001) {
    const WallTime reference{std::chrono::sys_days(2001y / std::chrono::January / 1d)};
    EXPECT_EQ(Date(reference).timeIntervalSinceReferenceDate, 0);
    EXPECT_EQ(Date(reference + 1500ms).timeIntervalSinceReferenceDate, 1.5);
    EXPECT_EQ(Date(reference - 1s).timeIntervalSinceReferenceDate, -1);
    // 2026-11-21 12:34:56 UTC
    EXPECT_EQ(Date(WallTime(1795264496s)).timeIntervalSinceReferenceDate, 816957296);
}

} // namespace
} // namespace orvanta
