// Saves settings and profiles as fast as it can until it is killed. Argument: the database.
// Prints the number of a save once the disk has it, and goes on from the one that it finds stored.

#include "tests/platform/linux/defaults/support/SavingProgram.h"

#include "core/persistence/ProfileStore.h"
#include "core/persistence/SettingsStore.h"
#include "platform/linux/StandardErrorLog.h"
#include "platform/linux/defaults/SQLiteUserDefaults.h"
#include "tests/support/ScriptedWallClock.h"

#include <algorithm>
#include <iostream>

namespace orvanta::test {
namespace {

int lastStored(SettingsStore& store) {
    int last = 0;
    for (const auto& [key, settings] : store.loadAll())
        last = std::max(last, static_cast<int>(settings.volume));
    return last;
}

[[noreturn]] void saveForEver(SQLiteUserDefaults& defaults) {
    SettingsStore settings(defaults);
    ProfileStore profiles(defaults);
    for (int number = lastStored(settings) + 1;; ++number) {
        settings.save(saving::application(number), saving::settings(number));
        profiles.save(saving::profile(number));
        settings.saveAutoTapEnabled(number % 2 == 1);
        if (number % 16 == 0 && defaults.synchronize())
            std::cout << number << std::endl; // at once, so that it is known before the kill
    }
}

} // namespace
} // namespace orvanta::test

int main(int count, char** arguments) {
    if (count != 2)
        return 2;
    orvanta::StandardErrorLog log;
    const orvanta::test::ScriptedWallClock clock;
    orvanta::SQLiteUserDefaults defaults({arguments[1], "com.meridane.orvanta"}, clock, log,
                                         {.betweenWrites = orvanta::Seconds(0.001)});
    orvanta::test::saveForEver(defaults);
}
