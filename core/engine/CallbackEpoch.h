#pragma once

#include <atomic>
#include <cstdint>

namespace orvanta {

/// Lets a control thread find out, without a lock, whether a callback that was running at some
/// moment has ended. One callback at a time per epoch; any number of control threads.
///
/// The count is odd while a callback runs. Both sides use read-modify-write operations, which have
/// one total order on the count: either the callback's entry comes after a control thread's mark,
/// and then the callback sees everything that thread published before, or it comes before it, and
/// then the mark is odd and the thread knows whom to wait for.
class CallbackEpoch {
public:
    CallbackEpoch() = default;
    CallbackEpoch(const CallbackEpoch&) = delete;
    CallbackEpoch& operator=(const CallbackEpoch&) = delete;

    /// Stands in the callback from its first read of anything shared to its last.
    class Callback {
    public:
        explicit Callback(CallbackEpoch& epoch) noexcept : count_(epoch.count_) {
            count_.fetch_add(1, std::memory_order_acq_rel);
        }

        ~Callback() { count_.fetch_add(1, std::memory_order_release); }

        Callback(const Callback&) = delete;
        Callback& operator=(const Callback&) = delete;

    private:
        std::atomic<std::uint64_t>& count_;
    };

    /// Taken by a control thread after it has withdrawn something from the callback's sight.
    using Mark = std::uint64_t;

    [[nodiscard]] Mark mark() noexcept { return count_.fetch_add(0, std::memory_order_acq_rel); }

    /// True once no callback can still hold what was withdrawn before the mark.
    [[nodiscard]] bool hasPassed(Mark mark) const noexcept {
        return mark % 2 == 0 || count_.load(std::memory_order_acquire) != mark;
    }

private:
    std::atomic<std::uint64_t> count_{0};
};

} // namespace orvanta
