#include "platform/linux/defaults/SQLiteUserDefaults.h"

#include <utility>

namespace orvanta {
namespace {

std::shared_ptr<const std::string> shared(std::string_view bytes) {
    return std::make_shared<const std::string>(bytes);
}

FileOperations& systemFileOperations() {
    static SystemFileOperations operations;
    return operations;
}

} // namespace

SQLiteUserDefaults::SQLiteUserDefaults(const DefaultsStorage::Place& place, const WallClock& clock,
                                       SystemLog& log, SavingPace pace)
    : SQLiteUserDefaults(place, clock, log, pace, systemFileOperations()) {}

SQLiteUserDefaults::SQLiteUserDefaults(const DefaultsStorage::Place& place, const WallClock& clock,
                                       SystemLog& log, SavingPace pace, FileOperations& files)
    : SQLiteUserDefaults(DefaultsStorage(place, files, clock, log), log, pace) {}

SQLiteUserDefaults::SQLiteUserDefaults(DefaultsStorage storage, SystemLog& log, SavingPace pace)
    : SQLiteUserDefaults(storage, storage.find(), log, pace) {}

SQLiteUserDefaults::SQLiteUserDefaults(const DefaultsStorage& storage, DefaultsStorage::Found found,
                                       SystemLog& log, SavingPace pace)
    : values_(found.values), saver_(storage, std::move(found), pace, log) {}

bool SQLiteUserDefaults::has(std::string_view key) const {
    const std::scoped_lock guard(mutex_);
    return values_.contains(key);
}

std::optional<std::string> SQLiteUserDefaults::data(std::string_view key) const {
    const auto data = value<DefaultsData>(key);
    return data ? std::optional(*data->bytes) : std::nullopt;
}

void SQLiteUserDefaults::setData(std::string_view key, std::string_view bytes) {
    set(key, DefaultsData{shared(bytes)});
}

bool SQLiteUserDefaults::boolean(std::string_view key) const {
    return value<bool>(key).value_or(false);
}

void SQLiteUserDefaults::setBoolean(std::string_view key, bool value) {
    set(key, value);
}

std::optional<std::string> SQLiteUserDefaults::string(std::string_view key) const {
    const auto text = value<DefaultsText>(key);
    return text ? std::optional(*text->text) : std::nullopt;
}

void SQLiteUserDefaults::setString(std::string_view key, std::string_view text) {
    set(key, DefaultsText{shared(text)});
}

bool SQLiteUserDefaults::synchronize() {
    return saver_.synchronize();
}

template <class Kind>
std::optional<Kind> SQLiteUserDefaults::value(std::string_view key) const {
    const std::scoped_lock guard(mutex_);
    const auto found = values_.find(key);
    if (found == values_.end())
        return std::nullopt;
    const Kind* const value = std::get_if<Kind>(&found->second);
    return value != nullptr ? std::optional(*value) : std::nullopt;
}

void SQLiteUserDefaults::set(std::string_view key, const DefaultsValue& value) {
    // One lock for both, so that the disk gets values in the order in which memory did.
    const std::scoped_lock guard(mutex_);
    values_.insert_or_assign(std::string(key), value);
    saver_.save(key, value);
}

std::filesystem::path userDefaultsFile(const std::filesystem::path& home,
                                       const char* xdgConfigHome) {
    const std::filesystem::path folder = xdgConfigHome != nullptr ? xdgConfigHome : "";
    return (folder.is_absolute() ? folder : home / ".config") / "orvanta" / "settings.db";
}

} // namespace orvanta
