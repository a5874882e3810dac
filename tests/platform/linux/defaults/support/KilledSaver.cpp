#include "tests/platform/linux/defaults/support/KilledSaver.h"

#include "core/persistence/ProfileStore.h"
#include "core/persistence/SettingsStore.h"
#include "tests/platform/linux/defaults/support/DefaultsFolder.h"
#include "tests/platform/linux/defaults/support/SavingProgram.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FileContent.h"

#include <gtest/gtest.h>

#include <random>
#include <thread>

namespace orvanta::test {
namespace {

constexpr int kKillsOfOneDatabase = 10;

/// Runs the program and kills it: one time of three while it starts, else after it has told of some
/// saves and at any moment of the next. Returns the last one that it told of; 0 for none.
int saveAndKill(const DefaultsFolder& settings, std::mt19937& random) {
    ChildProcess program(
        {{ORVANTA_SAVING_PROGRAM, settings.file}, settings.directory.path() / "log", true});
    int told = 0;
    const auto lines = random() % 3 == 0 ? 0 : 1 + random() % 4;
    for (unsigned line = 0; line < lines; ++line)
        if (const auto text = program.readLine(Seconds(30)))
            told = std::stoi(*text);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 20'000));
    program.kill();
    while (const auto text = program.readLine(Seconds(0)))
        told = std::stoi(*text);
    return told;
}

void expectStateAfterOneSave(UserDefaults& defaults, int atLeast) {
    SettingsStore store(defaults);
    const AppSettingsByKey settings = store.loadAll();
    int last = 0;
    for (const auto& [key, each] : settings)
        last = std::max(last, static_cast<int>(each.volume));
    ASSERT_GE(last, atLeast);
    for (int number = last; number > std::max(0, last - saving::kApplications); --number) {
        const auto found = settings.find(saving::application(number));
        ASSERT_NE(found, settings.end());
        EXPECT_EQ(found->second, saving::settings(number));
    }
    // Three values, each of which is old or new for itself.
    const auto profiles = ProfileStore(defaults).loadAll();
    int lastProfile = 0;
    for (const AudioProfile& each : profiles)
        lastProfile = std::max(lastProfile, static_cast<int>(each.globalSettings.masterVolume));
    EXPECT_GE(lastProfile, atLeast);
    for (int number = lastProfile; number > std::max(0, lastProfile - saving::kProfiles); --number)
        EXPECT_EQ(ProfileStore(defaults).load(saving::profile(number).id), saving::profile(number));
    EXPECT_TRUE(store.loadAutoTapEnabled().has_value() || atLeast == 0);
}

} // namespace

void expectOldOrNewSettingsAfterKills(int kills) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int kill = 0; kill < kills; kill += kKillsOfOneDatabase) {
        DefaultsFolder settings;
        for (int each = 0; each < kKillsOfOneDatabase && kill + each < kills; ++each) {
            const int told = saveAndKill(settings, random);
            auto defaults = settings.run();
            expectStateAfterOneSave(defaults, told);
            EXPECT_TRUE(settings.log.texts().empty())
                << testing::PrintToString(settings.log.texts()) << " at kill " << kill + each;
            EXPECT_EQ(fileContent(settings.directory.path() / "log"), "")
                << "the program's own log";
            if (testing::Test::HasFailure())
                return;
        }
    }
}

} // namespace orvanta::test
