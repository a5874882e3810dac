#pragma once

#include "core/platform/Logger.h"
#include "core/platform/WallClock.h"
#include "platform/linux/defaults/DefaultsDatabase.h"
#include "platform/linux/defaults/DefaultsValue.h"
#include "platform/linux/defaults/FileOperations.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace orvanta {

/// A domain's database as a file among others: made when it is first written, moved aside when it
/// cannot be read, copied when a run begins.
///
/// Beside "settings.db" stand "settings-last-start.db" and "settings-start-before.db": the database
/// as it was when the last run of the program began and the run before; "settings-unreadable-
/// {time}.db" for each one that is damaged; and "settings-not-read-{time}.db" for each one that is
/// sound but could not be read when a run began.
class DefaultsStorage {
public:
    struct Place {
        std::filesystem::path file;
        std::string domain;
        /// A registered file layer of SQLite's; empty for the system's own.
        std::string vfs = {};
    };

    /// What was found at the start.
    struct Found {
        /// Null where there is none or it cannot be written.
        std::unique_ptr<DefaultsDatabase> database = nullptr;
        DefaultsValues values = {};
        /// False when there may be more, which could not be read.
        bool isComplete = true;
    };

    struct Opened {
        std::unique_ptr<DefaultsDatabase> database = nullptr;
        /// It holds nothing of what was stored before.
        bool isFresh = false;
    };

    /// The references outlive the storage.
    DefaultsStorage(Place place, FileOperations& files, const WallClock& clock, SystemLog& log);

    /// Waits for nobody and never throws: what is damaged is moved aside, and the log tells of
    /// whatever cannot be read.
    [[nodiscard]] Found find();

    /// Makes the file where there is none. Throws `sqlite::Error` or std::system_error.
    [[nodiscard]] Opened openForWriting();

    /// Whether the file that was opened last still stands under its name.
    [[nodiscard]] bool isOpenedFileInPlace() const;
    /// After a write, which may have made a journal.
    void noteJournal();
    /// Takes the journal of a database that has lost its name away, so that it is not taken for
    /// that of the file which has the name now. The database is closed.
    void removeOrphanedJournal();

    /// Keeps the database as it is now as that of the last start, and that one as the one before.
    /// False, with a line in the log, when it fails; the older copies stay.
    bool keepCopy(DefaultsDatabase& database);

    /// Keeps the database as it is now beside all others. Throws as `openForWriting` does.
    void keepUnread(DefaultsDatabase& database);

private:
    /// Tells files apart that have had the same name.
    using Identity = std::pair<std::uint64_t, std::uint64_t>;

    [[nodiscard]] Found findInFile();
    [[nodiscard]] std::unique_ptr<DefaultsDatabase> open();
    /// Null when it had to be moved.
    [[nodiscard]] std::unique_ptr<DefaultsDatabase> openOrMoveAside();
    [[nodiscard]] Found findWithoutWriting(const sqlite::Error& reason) const;
    [[nodiscard]] static std::optional<Identity> identityOf(const std::filesystem::path& file);
    /// What stands beside the database under a name that ends so.
    [[nodiscard]] std::filesystem::path beside(const std::string& ending) const;
    /// The same with a number that nobody else has.
    [[nodiscard]] std::filesystem::path ownNameBeside(const std::string& ending) const;
    /// The same with the time, and a count where that is taken.
    [[nodiscard]] std::filesystem::path freeNameBeside(const std::string& ending) const;
    void makePrivate();
    void removeLeftovers();
    void writeCopy(DefaultsDatabase& database, const std::filesystem::path& copy);
    void moveAside(const sqlite::Error& reason);

    Place place_;
    FileOperations& files_;
    const WallClock& clock_;
    Logger log_;
    /// Behind the names of files that are being made, so that no two make the same.
    std::string ownNumber_;
    std::optional<Identity> openedFile_ = std::nullopt;
    std::optional<Identity> journal_ = std::nullopt;
    int timesMoved_ = 0;
};

} // namespace orvanta
