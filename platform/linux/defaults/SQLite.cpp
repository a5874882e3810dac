#include "platform/linux/defaults/SQLite.h"

#include <fmt/format.h>

#include <sqlite3.h>

namespace orvanta::sqlite {
namespace {

/// A file name as the library's URIs take it: with every byte escaped that could mean something.
std::string uriOf(const std::filesystem::path& file, std::string_view query) {
    constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                        "0123456789/-._~";
    std::string uri = "file://"; // of no host: a path may begin with two slashes itself
    const std::string path = std::filesystem::absolute(file);
    for (const char byte : path) {
        if (kPlain.find(byte) != std::string_view::npos)
            uri += byte;
        else
            uri += fmt::format("%{:02X}", static_cast<unsigned char>(byte));
    }
    return uri.append(query);
}

int lengthOf(std::string_view bytes) {
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw Error(SQLITE_TOOBIG, sqlite3_errstr(SQLITE_TOOBIG));
    return static_cast<int>(bytes.size());
}

/// A null pointer would be bound as no value at all.
const char* startOf(std::string_view bytes) {
    return bytes.data() != nullptr ? bytes.data() : "";
}

} // namespace

void Connection::Close::operator()(sqlite3* handle) const noexcept {
    sqlite3_close(handle);
}

Connection::Connection(const std::filesystem::path& file, Access access, const std::string& vfs) {
    const bool isImmutable = access == Access::immutable;
    const std::string name = uriOf(file, isImmutable ? "?immutable=1" : "");
    const int flags = SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX |
                      (isImmutable ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
    sqlite3* handle = nullptr;
    const int result =
        sqlite3_open_v2(name.c_str(), &handle, flags, vfs.empty() ? nullptr : vfs.c_str());
    handle_.reset(handle);
    if (result != SQLITE_OK)
        throw Error(result & 0xff,
                    handle != nullptr ? sqlite3_errmsg(handle) : sqlite3_errstr(result));
}

void Connection::run(const std::string& statements) const {
    if (sqlite3_exec(handle(), statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        fail();
}

void Connection::fail() const {
    throw Error(sqlite3_errcode(handle()) & 0xff, sqlite3_errmsg(handle()));
}

void Statement::Finalize::operator()(sqlite3_stmt* handle) const noexcept {
    sqlite3_finalize(handle);
}

Statement::Statement(Connection& connection, std::string_view text) : connection_(connection) {
    sqlite3_stmt* handle = nullptr;
    check(sqlite3_prepare_v2(connection.handle(), text.data(), lengthOf(text), &handle, nullptr));
    handle_.reset(handle);
}

Statement& Statement::bindText(int place, std::string_view text) {
    check(sqlite3_bind_text(handle_.get(), place, startOf(text), lengthOf(text), nullptr));
    return *this;
}

Statement& Statement::bindBlob(int place, std::string_view bytes) {
    check(sqlite3_bind_blob(handle_.get(), place, startOf(bytes), lengthOf(bytes), nullptr));
    return *this;
}

Statement& Statement::bindInteger(int place, std::int64_t value) {
    check(sqlite3_bind_int64(handle_.get(), place, value));
    return *this;
}

bool Statement::step() {
    const int result = sqlite3_step(handle_.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        connection_.fail();
    return result == SQLITE_ROW;
}

void Statement::reset() {
    check(sqlite3_reset(handle_.get()));
}

int Statement::columnType(int column) const {
    return sqlite3_column_type(handle_.get(), column);
}

std::string Statement::columnBytes(int column) const {
    const void* const bytes = sqlite3_column_blob(handle_.get(), column);
    const int size = sqlite3_column_bytes(handle_.get(), column);
    if (bytes == nullptr)
        return {};
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

std::int64_t Statement::columnInteger(int column) const {
    return sqlite3_column_int64(handle_.get(), column);
}

void Statement::check(int result) const {
    if (result != SQLITE_OK)
        connection_.fail();
}

} // namespace orvanta::sqlite
