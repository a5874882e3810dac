#pragma once

#include <atomic>
#include <chrono>
#include <thread>

namespace orvanta::pipewire {

/// Lets the data thread call something that the control side may take away at any time, and tells
/// the control side when no call is in flight any more. The data thread never waits.
///
/// The order of "busy" and "work" on both sides is what makes it safe, so both are sequentially
/// consistent: either the data thread sees that the work is gone, or the control side sees that it
/// is busy.
template <class Work>
class CallbackGate {
public:
    /// `work` must stay until `close` has returned.
    void open(Work* work) noexcept { work_.store(work); }

    /// Returns only when no call is in flight and none will come, however long that takes: whoever
    /// closes is about to free what the call uses. Calls `late` once after `patience`.
    template <class Late>
    void close(std::chrono::milliseconds patience, Late&& late) {
        work_.store(nullptr);
        const auto deadline = std::chrono::steady_clock::now() + patience;
        bool isLate = false;
        while (busy_.load()) {
            if (!isLate && std::chrono::steady_clock::now() >= deadline) {
                isLate = true;
                late();
            }
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        }
    }

    [[nodiscard]] bool isOpen() const noexcept { return work_.load() != nullptr; }

    /// On the data thread: calls `call` with the work if there is any, and says whether there was.
    template <class Call>
    bool pass(Call&& call) noexcept {
        busy_.store(true);
        Work* work = work_.load();
        if (work != nullptr)
            call(*work);
        busy_.store(false);
        return work != nullptr;
    }

private:
    std::atomic<Work*> work_{nullptr};
    std::atomic<bool> busy_{false};
};

} // namespace orvanta::pipewire
