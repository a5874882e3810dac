#include "platform/linux/defaults/DefaultsSaver.h"

#include <exception>
#include <system_error>
#include <utility>

namespace orvanta {

DefaultsSaver::DefaultsSaver(DefaultsStorage storage, DefaultsStorage::Found found, SavingPace pace,
                             SystemLog& log)
    : storage_(std::move(storage)),
      database_(std::move(found.database)),
      written_(std::move(found.values)),
      knowsAllStored_(found.isComplete),
      pace_(pace),
      log_(log, "defaults") {
    try {
        thread_ = std::thread([this] { run(); });
    } catch (const std::system_error& failure) {
        tellOfFailure(failure.what());
    }
}

DefaultsSaver::~DefaultsSaver() {
    {
        const std::scoped_lock guard(mutex_);
        isEnding_ = true;
    }
    wakeUp_.notify_one();
    if (thread_.joinable())
        thread_.join();
}

void DefaultsSaver::save(std::string_view key, DefaultsValue value) {
    {
        const std::scoped_lock guard(mutex_);
        waiting_.insert_or_assign(std::string(key), std::move(value));
        ++calls_;
    }
    wakeUp_.notify_one();
}

bool DefaultsSaver::synchronize() {
    std::unique_lock lock(mutex_);
    const std::uint64_t calls = calls_;
    const std::uint64_t earlierAttempts = startedAttempts_;
    const auto isSettled = [&] {
        return writtenCalls_ >= calls || finishedAttempts_ > earlierAttempts;
    };
    if (!isSettled() && thread_.joinable()) {
        isUrgent_ = true;
        wakeUp_.notify_one();
        tried_.wait(lock, isSettled);
    }
    return writtenCalls_ >= calls;
}

void DefaultsSaver::run() {
    if (database_)
        hasCopy_ = storage_.keepCopy(*database_);
    std::unique_lock lock(mutex_);
    while (waitForTurn(lock)) {
        DefaultsValues values = std::exchange(waiting_, {});
        const std::uint64_t calls = calls_;
        const bool isLast = isEnding_;
        isUrgent_ = false;
        ++startedAttempts_;
        lock.unlock();
        const bool isWritten = write(values);
        lock.lock();
        ++finishedAttempts_;
        nextWrite_ = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                        isWritten ? pace_.betweenWrites : pace_.beforeRetry);
        if (isWritten)
            writtenCalls_ = calls;
        else
            waiting_.merge(values); // which leaves the newer ones
        tried_.notify_all();
        if (isLast && !isWritten) {
            log_.error("The settings changed last are lost");
            return;
        }
    }
}

bool DefaultsSaver::waitForTurn(std::unique_lock<std::mutex>& lock) {
    wakeUp_.wait(lock, [&] { return isEnding_ || !waiting_.empty(); });
    if (waiting_.empty())
        return false;
    wakeUp_.wait_until(lock, nextWrite_, [&] { return isEnding_ || isUrgent_; });
    return true;
}

bool DefaultsSaver::write(const DefaultsValues& values) {
    try {
        writeOrThrow(values);
    } catch (const std::exception& failure) {
        // What has happened to the file meanwhile shows when it is opened anew.
        database_.reset();
        tellOfFailure(failure.what());
        return false;
    }
    if (std::exchange(isFailing_, false))
        log_.info("Settings are saved again");
    return true;
}

void DefaultsSaver::writeOrThrow(const DefaultsValues& values) {
    // Writing into a file that has lost its name would succeed, and be in vain.
    if (database_ && !storage_.isOpenedFileInPlace()) {
        database_.reset();
        storage_.removeOrphanedJournal();
    }
    if (!database_) {
        auto opened = storage_.openForWriting();
        database_ = std::move(opened.database);
        needsAll_ = needsAll_ || opened.isFresh;
        // Then there is nothing that a copy would keep.
        hasCopy_ = hasCopy_ || opened.isFresh;
        knowsAllStored_ = knowsAllStored_ || opened.isFresh;
    }
    if (!std::exchange(hasCopy_, true))
        storage_.keepCopy(*database_);
    if (!knowsAllStored_) {
        storage_.keepUnread(*database_);
        knowsAllStored_ = true;
    }
    if (needsAll_) {
        DefaultsValues all = values;
        all.merge(DefaultsValues(written_));
        database_->write(all);
        needsAll_ = false;
    } else {
        database_->write(values);
    }
    storage_.noteJournal();
    for (const auto& [key, value] : values)
        written_.insert_or_assign(key, value);
}

void DefaultsSaver::tellOfFailure(const char* reason) {
    if (!std::exchange(isFailing_, true))
        log_.error(
            "Settings cannot be saved: %s. They are kept in memory, and saving is tried again",
            reason);
}

} // namespace orvanta
