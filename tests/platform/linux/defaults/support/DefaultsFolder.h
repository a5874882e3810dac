#pragma once

#include "platform/linux/defaults/SQLiteUserDefaults.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/ScriptedWallClock.h"
#include "tests/support/TemporaryDirectory.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>

namespace orvanta::test {

/// A folder for settings of its own, and the runs of a program that keeps them there.
struct DefaultsFolder {
    TemporaryDirectory directory;
    std::filesystem::path folder = directory.path() / "config" / "orvanta";
    std::filesystem::path file = folder / "settings.db";
    ScriptedWallClock clock;
    RecordingLog log;

    [[nodiscard]] DefaultsStorage::Place place(const std::string& vfs = {}) const {
        return {file, "com.meridane.orvanta", vfs};
    }

    /// A run of the program, which ends with the result's life.
    [[nodiscard]] SQLiteUserDefaults run() { return {place(), clock, log}; }

    /// A run that does nothing but set this.
    void runSetting(std::string_view key, std::string_view text) {
        SQLiteUserDefaults(place(), clock, log).setString(key, text);
    }

    /// What the next run finds.
    [[nodiscard]] std::optional<std::string> stored(std::string_view key) {
        return run().string(key);
    }

    /// Of the files in the folder.
    [[nodiscard]] std::set<std::string> names() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            names.insert(entry.path().filename());
        return names;
    }

    [[nodiscard]] bool hasLogged(LogLevel level, std::string_view beginning) const {
        const auto messages = log.messages();
        return std::any_of(messages.begin(), messages.end(), [&](const auto& message) {
            return message.level == level && message.category == "defaults" &&
                   message.text.starts_with(beginning);
        });
    }
};

} // namespace orvanta::test
