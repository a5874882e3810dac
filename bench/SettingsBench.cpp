// What keeping settings costs the main thread: 200 applications, each with an equaliser and a
// compressor, in a real database.

#include "bench/SampleRecord.h"
#include "core/persistence/ProfileStore.h"
#include "core/persistence/SettingsStore.h"
#include "platform/linux/StandardErrorLog.h"
#include "platform/linux/defaults/SQLiteUserDefaults.h"
#include "tests/support/ScriptedWallClock.h"
#include "tests/support/TemporaryDirectory.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <string>
#include <thread>

namespace orvanta {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kApplications = 200;
constexpr int kSavesPerSecond = 60;

AppSettings settingsOf(float volume) {
    AppSettings settings = bench::sampleRecord(volume);
    settings.outputDeviceUID = "alsa_output.usb-0d8c_USB_Sound_Device-00.analog-stereo";
    return settings;
}

std::string keyOf(int application) {
    return "com.example.application" + std::to_string(application);
}

/// A database with all of them, as the next run of the program finds it.
class Settings {
public:
    Settings() {
        auto defaults = run();
        SettingsStore store(*defaults);
        AudioProfile profile{.id = {},
                             .name = "All",
                             .icon = "slider.horizontal.3",
                             .createdAt = Date(0),
                             .appSettings = {},
                             .globalSettings = {}};
        for (int application = 0; application < kApplications; ++application) {
            store.save(keyOf(application), settingsOf(1));
            profile.appSettings.emplace(keyOf(application), settingsOf(1));
        }
        ProfileStore(*defaults).save(profile);
    }

    [[nodiscard]] std::unique_ptr<SQLiteUserDefaults> run() {
        return std::make_unique<SQLiteUserDefaults>(
            DefaultsStorage::Place{directory_.path() / "settings.db", "com.meridane.orvanta"},
            clock_, log_);
    }

private:
    test::TemporaryDirectory directory_;
    test::ScriptedWallClock clock_;
    StandardErrorLog log_;
};

/// Reading the database at the start of the program.
void settings_open(benchmark::State& state) {
    Settings settings;
    for (auto _ : state) {
        auto defaults = settings.run();
        state.PauseTiming();
        defaults.reset();
        state.ResumeTiming();
    }
}

/// The first look at the settings.
void settings_load(benchmark::State& state) {
    Settings settings;
    const auto defaults = settings.run();
    for (auto _ : state)
        benchmark::DoNotOptimize(SettingsStore(*defaults).loadAll());
}

/// One application's settings again and again, the database written beside it.
void settings_save(benchmark::State& state) {
    Settings settings;
    const auto defaults = settings.run();
    SettingsStore store(*defaults);
    benchmark::DoNotOptimize(store.loadAll());
    float volume = 0;
    for (auto _ : state)
        store.save(keyOf(77), settingsOf(volume += 0.001F));
}

/// One profile of 200 applications.
void settings_saveProfile(benchmark::State& state) {
    Settings settings;
    const auto defaults = settings.run();
    ProfileStore store(*defaults);
    AudioProfile profile = store.loadAll().front();
    for (auto _ : state) {
        profile.globalSettings.masterVolume += 0.001F;
        store.save(profile);
    }
}

double threadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// A slider that is dragged for a minute. `busy` is the share of that time which the saves take of
/// the main thread's processor time, `taken` the same by the clock, waits included.
void settings_dragForAMinute(benchmark::State& state) {
    Settings settings;
    const auto defaults = settings.run();
    SettingsStore store(*defaults);
    benchmark::DoNotOptimize(store.loadAll());
    for (auto _ : state) {
        const auto start = Clock::now();
        double processorSeconds = 0;
        Milliseconds taken{};
        Milliseconds longest{};
        for (int save = 0; save < 60 * kSavesPerSecond; ++save) {
            std::this_thread::sleep_until(start + save * std::chrono::microseconds(1'000'000) /
                                                      kSavesPerSecond);
            const auto before = Clock::now();
            const double processorBefore = threadSeconds();
            store.save(keyOf(77), settingsOf(static_cast<float>(save) / 1000.0F));
            processorSeconds += threadSeconds() - processorBefore;
            const Milliseconds each = Clock::now() - before;
            taken += each;
            longest = std::max(longest, each);
        }
        const Milliseconds all = Clock::now() - start;
        state.counters["busy_percent"] = 100 * processorSeconds * 1000 / all.count();
        state.counters["taken_percent"] = 100 * taken / all;
        state.counters["longest_ms"] = longest.count();
    }
}

BENCHMARK(settings_open)->Unit(benchmark::kMillisecond);
BENCHMARK(settings_load)->Unit(benchmark::kMillisecond);
BENCHMARK(settings_save)->Unit(benchmark::kMicrosecond);
BENCHMARK(settings_saveProfile)->Unit(benchmark::kMicrosecond);
BENCHMARK(settings_dragForAMinute)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

} // namespace
} // namespace orvanta
