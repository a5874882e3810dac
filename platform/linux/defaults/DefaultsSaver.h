#pragma once

#include "core/platform/Logger.h"
#include "core/platform/RunLoop.h"
#include "platform/linux/defaults/DefaultsStorage.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

namespace orvanta {

/// How often the disk is asked.
struct SavingPace {
    /// From one write to the next while values keep changing; the first one is written at once.
    Seconds betweenWrites{0.1};
    /// From one that failed to the next attempt.
    Seconds beforeRetry{2};
};

/// Writes values to their database on a thread of its own, the newest of each key and all that wait
/// in one go. What cannot be written waits until it can; the log says when that begins and when it
/// is over.
class DefaultsSaver {
public:
    /// `log` and what the storage refers to outlive the saver.
    DefaultsSaver(DefaultsStorage storage, DefaultsStorage::Found found, SavingPace pace,
                  SystemLog& log);
    DefaultsSaver(const DefaultsSaver&) = delete;
    DefaultsSaver& operator=(const DefaultsSaver&) = delete;
    /// Tries once more to write what waits.
    ~DefaultsSaver();

    /// Any thread; waits for no disk.
    void save(std::string_view key, DefaultsValue value);

    /// Returns when all that was saved before has been tried: whether it is on the disk.
    bool synchronize();

private:
    using Clock = std::chrono::steady_clock;

    void run();
    /// Until there is something to write and it is time; false when nothing will be any more.
    bool waitForTurn(std::unique_lock<std::mutex>& lock);
    [[nodiscard]] bool write(const DefaultsValues& values);
    void writeOrThrow(const DefaultsValues& values);
    void tellOfFailure(const char* reason);

    // Of the saver's own thread.
    DefaultsStorage storage_;
    std::unique_ptr<DefaultsDatabase> database_;
    /// What a new database needs when the old one has become unreadable or is gone.
    DefaultsValues written_;
    bool needsAll_ = false;
    /// False when the disk may hold values that were never read.
    bool knowsAllStored_ = true;
    /// Of the database as it was before the first write, or a second attempt at it.
    bool hasCopy_ = false;
    bool isFailing_ = false;

    const SavingPace pace_;
    const Logger log_;

    std::mutex mutex_;
    std::condition_variable wakeUp_;
    std::condition_variable tried_;
    // Under the mutex.
    DefaultsValues waiting_;
    Clock::time_point nextWrite_{};
    /// Calls of `save`, and how many of them the disk knows.
    std::uint64_t calls_ = 0;
    std::uint64_t writtenCalls_ = 0;
    std::uint64_t startedAttempts_ = 0;
    std::uint64_t finishedAttempts_ = 0;
    bool isUrgent_ = false;
    bool isEnding_ = false;

    std::thread thread_;
};

} // namespace orvanta
