#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

/// As much of SQLite as a table of values needs, with owners for what it hands out.
namespace orvanta::sqlite {

/// What the library says of a failure.
class Error : public std::runtime_error {
public:
    Error(int code, const std::string& text) : std::runtime_error(text), code_(code) {}

    /// A primary result code, such as SQLITE_FULL.
    [[nodiscard]] int code() const noexcept { return code_; }

private:
    int code_;
};

enum class Access {
    readWrite,
    /// Takes no lock and looks at no journal: for a file that nobody can write to.
    immutable,
};

/// A connection to a database. Every operation but the end throws `Error`. Used by one thread at a
/// time.
class Connection {
public:
    /// The file is there already. `vfs`: the name of a registered file layer; empty for the
    /// system's own.
    Connection(const std::filesystem::path& file, Access access, const std::string& vfs = {});

    /// Runs statements whose answers nobody asks for.
    void run(const std::string& statements) const;

    /// Fails for the reason that the last call on the connection has left.
    [[noreturn]] void fail() const;

    [[nodiscard]] sqlite3* handle() const noexcept { return handle_.get(); }

private:
    struct Close {
        void operator()(sqlite3* handle) const noexcept;
    };

    std::unique_ptr<sqlite3, Close> handle_;
};

/// A prepared statement. Its connection outlives it; every operation throws `Error`.
class Statement {
public:
    Statement(Connection& connection, std::string_view text);

    /// The bytes stay the caller's and valid until the statement ends or is bound anew. Places
    /// count from 1.
    Statement& bindText(int place, std::string_view text);
    Statement& bindBlob(int place, std::string_view bytes);
    Statement& bindInteger(int place, std::int64_t value);

    /// Whether there is a row (another one).
    bool step();
    /// For another run with other values.
    void reset();

    /// SQLITE_INTEGER and the like. Columns count from 0.
    [[nodiscard]] int columnType(int column) const;
    /// Of a text or a blob.
    [[nodiscard]] std::string columnBytes(int column) const;
    [[nodiscard]] std::int64_t columnInteger(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* handle) const noexcept;
    };

    void check(int result) const;

    Connection& connection_;
    std::unique_ptr<sqlite3_stmt, Finalize> handle_;
};

} // namespace orvanta::sqlite
