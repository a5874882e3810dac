#pragma once

#include "core/platform/UserDefaults.h"
#include "platform/linux/defaults/DefaultsSaver.h"

#include <filesystem>
#include <mutex>

namespace orvanta {

/// The user's defaults in an SQLite database. All values are read once, at the start; from then on
/// memory answers, and what is set is written behind the caller's back within a fraction of a
/// second. A database that cannot be read is moved aside, one that cannot be written waits; the log
/// says so. All operations may be called from any thread.
class SQLiteUserDefaults final : public UserDefaults {
public:
    /// The references outlive the defaults. `files` is for tests that make files fail.
    SQLiteUserDefaults(const DefaultsStorage::Place& place, const WallClock& clock, SystemLog& log,
                       SavingPace pace = {});
    SQLiteUserDefaults(const DefaultsStorage::Place& place, const WallClock& clock, SystemLog& log,
                       SavingPace pace, FileOperations& files);

    [[nodiscard]] bool has(std::string_view key) const override;
    [[nodiscard]] std::optional<std::string> data(std::string_view key) const override;
    void setData(std::string_view key, std::string_view bytes) override;
    [[nodiscard]] bool boolean(std::string_view key) const override;
    void setBoolean(std::string_view key, bool value) override;
    [[nodiscard]] std::optional<std::string> string(std::string_view key) const override;
    void setString(std::string_view key, std::string_view text) override;

    /// Returns when the disk has all that was set before (true), or has refused it (false).
    bool synchronize();

private:
    SQLiteUserDefaults(const DefaultsStorage& storage, DefaultsStorage::Found found, SystemLog& log,
                       SavingPace pace);
    SQLiteUserDefaults(DefaultsStorage storage, SystemLog& log, SavingPace pace);

    template <class Kind>
    [[nodiscard]] std::optional<Kind> value(std::string_view key) const;
    void set(std::string_view key, const DefaultsValue& value);

    mutable std::mutex mutex_;
    DefaultsValues values_;
    DefaultsSaver saver_;
};

/// "orvanta/settings.db" in the user's folder for settings: $XDG_CONFIG_HOME, or ".config" in the
/// home folder where that names no absolute folder.
[[nodiscard]] std::filesystem::path userDefaultsFile(const std::filesystem::path& home,
                                                     const char* xdgConfigHome);

} // namespace orvanta
