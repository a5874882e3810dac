#pragma once

#include <atomic>
#include <cstdint>

namespace orvanta {

/// Asks the IO thread to clear what only it may touch. Control threads ask; the IO thread answers
/// when it next comes by. While a request is open, readers of published values take them as cleared
/// already: a block that was under way when the request came may still write old ones.
class ClearRequest {
public:
    void ask() noexcept { asked_.fetch_add(1, std::memory_order_release); }

    [[nodiscard]] bool isOpen() const noexcept {
        return asked_.load(std::memory_order_acquire) != answered_.load(std::memory_order_acquire);
    }

    /// IO thread: runs `clear` when somebody has asked since the last time.
    template <class Clear>
    void answer(Clear&& clear) noexcept {
        const std::uint32_t asked = asked_.load(std::memory_order_acquire);
        if (asked == answered_.load(std::memory_order_relaxed))
            return;
        clear();
        answered_.store(asked, std::memory_order_release);
    }

private:
    std::atomic<std::uint32_t> asked_{0};
    std::atomic<std::uint32_t> answered_{0};
};

} // namespace orvanta
