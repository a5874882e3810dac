#pragma once

#include "platform/linux/defaults/DefaultsValue.h"
#include "platform/linux/defaults/SQLite.h"

#include <filesystem>
#include <string>

namespace orvanta {

/// The table that holds one domain of the user's defaults: a row for each key, whose value is a
/// blob for data, a text for a string, and 0 or 1 for a Boolean. Every operation throws
/// `sqlite::Error`.
class DefaultsDatabase {
public:
    /// Opens a file that is there and looks it through: one that is damaged is refused. An empty
    /// file is an empty database. `domain` names the table.
    DefaultsDatabase(const std::filesystem::path& file, std::string domain,
                     sqlite::Access access = sqlite::Access::readWrite,
                     const std::string& vfs = {});

    /// All rows but those with a value of no known kind. A table that is not of this making counts
    /// as damage.
    [[nodiscard]] DefaultsValues values();

    /// All of them or, when it fails, none. Returns when the disk has them for good.
    void write(const DefaultsValues& values);

    /// The database as it is now, journal included, into an empty file.
    void copyTo(const std::filesystem::path& emptyFile);

private:
    [[nodiscard]] bool hasTable();
    void refuseOtherTable();
    void switchToJournal();
    void prepareForWriting();
    void writeAll(const DefaultsValues& values);

    const std::string domain_;
    /// The domain's name as SQL takes it.
    const std::string table_;
    sqlite::Connection connection_;
    bool isPrepared_ = false;
};

/// Whether opening or reading has failed because of what is in the file, not because of what is
/// around it.
[[nodiscard]] bool isUnreadable(const sqlite::Error& error);

} // namespace orvanta
