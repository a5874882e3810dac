#pragma once

#include "core/platform/Logger.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <thread>

namespace orvanta {

/// Shape of both buffer lists of an aggregate's first callback. Samples and channels are those of
/// the first buffer of a side, 0 where there is none.
struct FirstCallback {
    long inSamples = 0;
    long inChannels = 0;
    long outSamples = 0;
    long outChannels = 0;
    long inBuffers = 0;
    long outBuffers = 0;
};

/// Carries that one log record from the IO thread to the system log. The IO thread leaves the bare
/// numbers in a slot and wakes a thread that formats and writes; it allocates nothing, waits for
/// nobody, and drops the record if all slots are taken.
class FirstCallbackLog {
public:
    /// `logger` must outlive this.
    explicit FirstCallbackLog(const Logger& logger);
    /// Writes what is still waiting.
    ~FirstCallbackLog();
    FirstCallbackLog(const FirstCallbackLog&) = delete;
    FirstCallbackLog& operator=(const FirstCallbackLog&) = delete;

    /// For IO threads.
    void post(const FirstCallback& record) noexcept;

    /// Writes what was posted before the call, and returns when it stands in the log.
    void flush();

private:
    enum class SlotState { empty, claimed, filled };

    struct Slot {
        std::atomic<SlotState> state{SlotState::empty};
        FirstCallback record;
    };

    void runWriter();

    const Logger& logger_;
    std::array<Slot, 64> slots_;
    std::mutex writing_;
    std::atomic<int> wakeUps_{0};
    std::atomic<bool> isEnding_{false};
    std::thread writer_;
};

} // namespace orvanta
