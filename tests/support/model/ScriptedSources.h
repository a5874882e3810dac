#pragma once

#include "core/discovery/AudioDiscovering.h"
#include "core/discovery/OutputDeviceManaging.h"
#include "core/persistence/SettingsStoring.h"
#include "core/publishing/Observers.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orvanta::test {

/// The applications that a test says are there.
class ScriptedDiscovery final : public AudioDiscovering {
public:
    std::vector<AudioApp> apps;
    int passes = 0;
    /// Runs while the list is being made, when set.
    std::function<void()> meanwhile;

    [[nodiscard]] std::vector<AudioApp> discoverAudioApps() override {
        ++passes;
        if (meanwhile)
            meanwhile();
        return apps;
    }
};

/// The devices that a test says are there.
class ScriptedDevices final : public OutputDeviceManaging {
public:
    std::vector<OutputDevice> devices;
    std::string defaultUID;

    [[nodiscard]] const std::vector<OutputDevice>& availableDevices() const override {
        return devices;
    }

    [[nodiscard]] const std::string& defaultDeviceUID() const override { return defaultUID; }

    void refresh() override {}

    [[nodiscard]] Observation observe(std::function<void()> observer) override {
        return changed_.observe(std::move(observer));
    }

    /// Tells the observers, as the devices do once they have changed.
    void announce() { changed_.tell(); }

private:
    Observers<> changed_;
};

/// A settings store in memory, which writes down what is done to it.
class RecordingSettings final : public SettingsStoring {
public:
    AppSettingsByKey records;
    std::optional<bool> autoTap;
    /// "save music", "remove music", "saveAutoTapEnabled true".
    std::vector<std::string> calls;
    /// Told of each call too, when set.
    std::function<void(const std::string& call)> listener;

    void save(std::string_view bundleID, const AppSettings& settings) override {
        note("save " + std::string(bundleID));
        records.insert_or_assign(std::string(bundleID), settings);
    }

    [[nodiscard]] std::optional<AppSettings> load(std::string_view bundleID) override {
        const auto found = records.find(std::string(bundleID));
        return found == records.end() ? std::nullopt : std::optional(found->second);
    }

    [[nodiscard]] AppSettingsByKey loadAll() override { return records; }

    void remove(std::string_view bundleID) override {
        note("remove " + std::string(bundleID));
        records.erase(std::string(bundleID));
    }

    void saveAutoTapEnabled(bool value) override {
        note(value ? "saveAutoTapEnabled true" : "saveAutoTapEnabled false");
        autoTap = value;
    }

    [[nodiscard]] std::optional<bool> loadAutoTapEnabled() override { return autoTap; }

    /// Those since the last time, and forgets them.
    std::vector<std::string> takeCalls() { return std::exchange(calls, {}); }

private:
    void note(const std::string& call) {
        calls.push_back(call);
        if (listener)
            listener(call);
    }
};

} // namespace orvanta::test
