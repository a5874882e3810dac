#include "platform/linux/defaults/DefaultsStorage.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <ctime>
#include <sqlite3.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace orvanta {

namespace fs = std::filesystem;

namespace {

/// Of a disk that damages whatever is written to it no more is kept than this, in one run.
constexpr int kMostDamagedFiles = 3;
constexpr int kMostLinks = 16;

/// Of write-ahead journals first.
constexpr std::array kJournals{"-wal", "-shm", "-journal"};

// With the process behind them.
constexpr const char* kUnfinishedCopy = "-unfinished-copy-";
constexpr const char* kSecondName = "-second-name-";

/// "2026-11-21T12-34-56Z", which any file system takes.
std::string timeStamp(WallTime time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts{};
    ::gmtime_r(&seconds, &parts);
    char text[32];
    const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H-%M-%SZ", &parts);
    return {text, length};
}

/// Throws when there is no telling.
bool stands(const fs::path& file) {
    std::error_code failure;
    const fs::file_type type = fs::symlink_status(file, failure).type();
    if (type == fs::file_type::none)
        throw std::system_error(failure, file.native());
    return type != fs::file_type::not_found;
}

/// Where a link leads, also when nothing stands there yet.
fs::path followed(fs::path file) {
    std::error_code failure;
    for (int link = 0; link < kMostLinks && fs::is_symlink(file, failure); ++link)
        file = file.parent_path() / fs::read_symlink(file, failure);
    return file;
}

/// `file` with something behind its whole name, as SQLite names a database's journals.
fs::path withSuffix(const fs::path& file, const char* suffix) {
    return {file.native() + suffix};
}

bool hasContent(const fs::path& file) {
    std::error_code failure;
    const std::uintmax_t size = fs::file_size(file, failure);
    return !failure && size > 0;
}

/// That of the process, and which of its storages it is.
std::string nextNumber() {
    static std::atomic<int> count = 0;
    return std::to_string(::getpid()) + '-' + std::to_string(++count);
}

bool isRunning(std::string_view process) {
    pid_t number = 0;
    const auto read = std::from_chars(process.data(), process.data() + process.size(), number);
    return read.ec != std::errc() || number <= 0 || ::kill(number, 0) == 0 || errno != ESRCH;
}

} // namespace

DefaultsStorage::DefaultsStorage(Place place, FileOperations& files, const WallClock& clock,
                                 SystemLog& log)
    : place_(std::move(place)),
      files_(files),
      clock_(clock),
      log_(log, "defaults"),
      ownNumber_(nextNumber()) {
    place_.file = followed(place_.file);
}

DefaultsStorage::Found DefaultsStorage::find() {
    try {
        if (!stands(place_.file))
            return {};
        makePrivate();
        return findInFile();
    } catch (const std::exception& failure) {
        log_.error("The settings cannot be read: %s", failure.what());
        return {.isComplete = false};
    }
}

DefaultsStorage::Found DefaultsStorage::findInFile() {
    Found found;
    try {
        found.database = open();
        found.values = found.database->values();
    } catch (const sqlite::Error& error) {
        found.database.reset();
        if (!isUnreadable(error))
            return findWithoutWriting(error);
        moveAside(error);
    }
    return found;
}

/// On a disk that is full or cannot be written, not even a lock can be had. Nor is one needed where
/// all is in the file itself and nobody holds it.
DefaultsStorage::Found DefaultsStorage::findWithoutWriting(const sqlite::Error& reason) const {
    if (reason.code() == SQLITE_BUSY || hasContent(withSuffix(place_.file, "-wal")))
        throw reason;
    DefaultsDatabase database(place_.file, place_.domain, sqlite::Access::immutable, place_.vfs);
    Found found;
    found.values = database.values();
    return found;
}

DefaultsStorage::Opened DefaultsStorage::openForWriting() {
    Opened opened;
    if (stands(place_.file))
        opened.database = openOrMoveAside();
    if (!opened.database) {
        const fs::path folder = place_.file.parent_path();
        files_.makeFolder(folder);
        // Somebody else may have been faster.
        opened.isFresh = files_.makeFile(place_.file);
        files_.sync(folder);
        opened.database = open();
    }
    return opened;
}

bool DefaultsStorage::isOpenedFileInPlace() const {
    return openedFile_ && identityOf(place_.file) == openedFile_;
}

void DefaultsStorage::noteJournal() {
    journal_ = identityOf(withSuffix(place_.file, kJournals[0]));
}

void DefaultsStorage::removeOrphanedJournal() {
    if (!journal_ || identityOf(withSuffix(place_.file, kJournals[0])) != journal_)
        return;
    for (const char* journal : kJournals)
        files_.remove(withSuffix(place_.file, journal));
}

bool DefaultsStorage::keepCopy(DefaultsDatabase& database) {
    const fs::path lastStart = beside("-last-start");
    const fs::path startBefore = beside("-start-before");
    const fs::path next = ownNameBeside(kUnfinishedCopy);
    try {
        removeLeftovers();
        writeCopy(database, next);
        if (stands(lastStart)) {
            // A second name first, so that at no moment a copy is missing.
            const fs::path second = ownNameBeside(kSecondName);
            files_.remove(second);
            const bool hasTwoNames = files_.link(lastStart, second);
            files_.rename(hasTwoNames ? second : lastStart, startBefore);
        }
        files_.rename(next, lastStart);
        files_.sync(place_.file.parent_path());
        return true;
    } catch (const std::exception& failure) {
        log_.error("The settings database could not be copied: %s", failure.what());
        return false;
    }
}

void DefaultsStorage::keepUnread(DefaultsDatabase& database) {
    const fs::path copy = freeNameBeside("-not-read");
    const fs::path unfinished = ownNameBeside(kUnfinishedCopy);
    writeCopy(database, unfinished);
    files_.rename(unfinished, copy);
    files_.sync(place_.file.parent_path());
    log_.error("The settings that could not be read when the program started are kept in %s",
               copy.c_str());
}

std::unique_ptr<DefaultsDatabase> DefaultsStorage::open() {
    auto database = std::make_unique<DefaultsDatabase>(place_.file, place_.domain,
                                                       sqlite::Access::readWrite, place_.vfs);
    openedFile_ = identityOf(place_.file);
    noteJournal();
    return database;
}

std::unique_ptr<DefaultsDatabase> DefaultsStorage::openOrMoveAside() {
    try {
        return open();
    } catch (const sqlite::Error& error) {
        if (!isUnreadable(error) || timesMoved_ == kMostDamagedFiles)
            throw;
        moveAside(error);
        return nullptr;
    }
}

std::optional<DefaultsStorage::Identity> DefaultsStorage::identityOf(const fs::path& file) {
    struct stat status {};

    if (::stat(file.c_str(), &status) != 0)
        return std::nullopt;
    return Identity(status.st_dev, status.st_ino);
}

fs::path DefaultsStorage::beside(const std::string& ending) const {
    const fs::path name = place_.file.stem().native() + ending + place_.file.extension().native();
    return place_.file.parent_path() / name;
}

fs::path DefaultsStorage::ownNameBeside(const std::string& ending) const {
    return beside(ending + ownNumber_);
}

fs::path DefaultsStorage::freeNameBeside(const std::string& ending) const {
    const std::string stamp = ending + '-' + timeStamp(clock_.now());
    fs::path name = beside(stamp);
    for (int count = 2; stands(name); ++count)
        name = beside(stamp + '-' + std::to_string(count));
    return name;
}

/// Somebody else's files may be readable nevertheless.
void DefaultsStorage::makePrivate() {
    std::vector<fs::path> all{place_.file, beside("-last-start"), beside("-start-before")};
    for (const char* journal : kJournals)
        all.push_back(withSuffix(place_.file, journal));
    for (const fs::path& file : all) {
        try {
            if (stands(file))
                files_.makePrivate(file);
        } catch (const std::system_error&) {
            continue;
        }
    }
}

/// Of processes that ended in the middle of a copy.
void DefaultsStorage::removeLeftovers() {
    const std::string stem = place_.file.stem();
    for (const auto& entry : fs::directory_iterator(place_.file.parent_path())) {
        const std::string name = entry.path().stem();
        for (const char* ending : {kUnfinishedCopy, kSecondName}) {
            const std::string beginning = stem + ending;
            if (name.starts_with(beginning) &&
                !isRunning(std::string_view(name).substr(beginning.size())))
                files_.remove(entry.path());
        }
    }
}

/// A file that is a sound database, or none at all.
void DefaultsStorage::writeCopy(DefaultsDatabase& database, const fs::path& copy) {
    files_.remove(copy);
    files_.makeFile(copy);
    try {
        database.copyTo(copy);
        files_.sync(copy);
        // Looks it through.
        const DefaultsDatabase written(copy, place_.domain, sqlite::Access::immutable, place_.vfs);
    } catch (const std::exception&) {
        files_.remove(copy);
        throw;
    }
}

void DefaultsStorage::moveAside(const sqlite::Error& reason) {
    const fs::path aside = freeNameBeside("-unreadable");
    files_.rename(place_.file, aside);
    ++timesMoved_;
    log_.error("The settings database is unreadable (%s) and was moved to %s", reason.what(),
               aside.c_str());
    // What was not yet in the file itself. A journal that stays is not taken for a new database's,
    // which is empty.
    for (const char* journal : kJournals)
        if (stands(withSuffix(place_.file, journal)))
            files_.rename(withSuffix(place_.file, journal), withSuffix(aside, journal));
}

} // namespace orvanta
