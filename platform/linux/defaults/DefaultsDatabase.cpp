#include "platform/linux/defaults/DefaultsDatabase.h"

#include <fmt/format.h>

#include <chrono>
#include <optional>
#include <sqlite3.h>
#include <thread>
#include <utility>

namespace orvanta {
namespace {

/// How long a write waits for another program's hold on the file; reading does not.
constexpr int kPatienceMs = 1000;
constexpr int kMostAttempts = 50;

std::string quoted(const std::string& name) {
    std::string identifier = "\"";
    for (const char letter : name)
        identifier.append(letter == '"' ? 2 : 1, letter);
    return identifier + '"';
}

void refuseDamaged(sqlite::Connection& connection) {
    try {
        sqlite::Statement check(connection, "PRAGMA quick_check(1)");
        if (check.step() && check.columnBytes(0) != "ok")
            throw sqlite::Error(SQLITE_CORRUPT, check.columnBytes(0));
    } catch (const sqlite::Error& error) {
        // It opens, and makes no sense.
        if (error.code() == SQLITE_ERROR)
            throw sqlite::Error(SQLITE_CORRUPT, error.what());
        throw;
    }
}

std::optional<DefaultsValue> valueIn(const sqlite::Statement& row, int column) {
    switch (row.columnType(column)) {
    case SQLITE_BLOB:
        return DefaultsData{std::make_shared<const std::string>(row.columnBytes(column))};
    case SQLITE_TEXT:
        return DefaultsText{std::make_shared<const std::string>(row.columnBytes(column))};
    case SQLITE_INTEGER:
        return row.columnInteger(column) != 0;
    default:
        return std::nullopt;
    }
}

/// Binds a value to the place of its kind.
struct Bind {
    sqlite::Statement& statement;
    int place;

    void operator()(bool value) const { statement.bindInteger(place, value ? 1 : 0); }

    void operator()(const DefaultsText& text) const { statement.bindText(place, *text.text); }

    void operator()(const DefaultsData& data) const { statement.bindBlob(place, *data.bytes); }
};

} // namespace

bool isUnreadable(const sqlite::Error& error) {
    return error.code() == SQLITE_NOTADB || error.code() == SQLITE_CORRUPT;
}

DefaultsDatabase::DefaultsDatabase(const std::filesystem::path& file, std::string domain,
                                   sqlite::Access access, const std::string& vfs)
    : domain_(std::move(domain)), table_(quoted(domain_)), connection_(file, access, vfs) {
    // Nothing in the file is to be run, and nothing in it is taken on trust.
    connection_.run("PRAGMA trusted_schema = OFF; PRAGMA cell_size_check = ON;");
    refuseDamaged(connection_);
}

DefaultsValues DefaultsDatabase::values() {
    DefaultsValues values;
    if (!hasTable())
        return values;
    refuseOtherTable();
    sqlite::Statement rows(connection_, fmt::format("SELECT key, value FROM {}", table_));
    while (rows.step()) {
        if (auto value = valueIn(rows, 1))
            values.insert_or_assign(rows.columnBytes(0), *std::move(value));
    }
    return values;
}

void DefaultsDatabase::write(const DefaultsValues& values) {
    prepareForWriting();
    connection_.run("BEGIN IMMEDIATE");
    try {
        writeAll(values);
        connection_.run("COMMIT");
    } catch (const sqlite::Error&) {
        // Some failures have ended the transaction already.
        if (sqlite3_get_autocommit(connection_.handle()) == 0)
            sqlite3_exec(connection_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

void DefaultsDatabase::copyTo(const std::filesystem::path& emptyFile) {
    sqlite::Statement(connection_, "VACUUM INTO ?").bindText(1, emptyFile.native()).step();
}

bool DefaultsDatabase::hasTable() {
    sqlite::Statement table(connection_,
                            "SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?");
    return table.bindText(1, domain_).step();
}

void DefaultsDatabase::refuseOtherTable() {
    sqlite::Statement columns(connection_, "SELECT count(*) FROM pragma_table_info(?) "
                                           "WHERE name IN ('key', 'value')");
    if (columns.bindText(1, domain_).step() && columns.columnInteger(0) != 2)
        throw sqlite::Error(SQLITE_CORRUPT, "the table " + domain_ + " is another program's");
}

/// A write appends to the journal and is safe when that is synced: a process killed, or a machine
/// without power, leaves the old state or the new one. Where a file system has no memory to share
/// the older kind of journal stays, which is as safe.
void DefaultsDatabase::switchToJournal() {
    for (int attempt = 1;; ++attempt) {
        try {
            connection_.run("PRAGMA journal_mode = WAL");
            return;
        } catch (const sqlite::Error& error) {
            // This one statement does not wait for others by itself.
            if (error.code() != SQLITE_BUSY || attempt == kMostAttempts)
                throw;
            std::this_thread::sleep_for(std::chrono::milliseconds(kPatienceMs / kMostAttempts));
        }
    }
}

void DefaultsDatabase::prepareForWriting() {
    if (isPrepared_)
        return;
    sqlite3_busy_timeout(connection_.handle(), kPatienceMs);
    switchToJournal();
    connection_.run("PRAGMA synchronous = FULL");
    connection_.run(fmt::format(
        "CREATE TABLE IF NOT EXISTS {} (key TEXT NOT NULL PRIMARY KEY, value NOT NULL)", table_));
    isPrepared_ = true;
}

void DefaultsDatabase::writeAll(const DefaultsValues& values) {
    sqlite::Statement insert(
        connection_, fmt::format("INSERT OR REPLACE INTO {} (key, value) VALUES (?, ?)", table_));
    for (const auto& [key, value] : values) {
        insert.bindText(1, key);
        std::visit(Bind{insert, 2}, value);
        insert.step();
        insert.reset();
    }
}

} // namespace orvanta
