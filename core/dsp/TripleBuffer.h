#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <type_traits>

namespace orvanta {

/// Hands whole values from a control thread to an IO thread. Neither side ever waits, retries or
/// sees a value half written: there are three slots, one for each side to work in and one to
/// exchange. The reader gets the newest value; those in between are lost, as parameters may be.
///
/// `publish` belongs to one control thread at a time, `latest` to one IO thread at a time.
template <class Value>
class TripleBuffer {
    static_assert(std::is_trivially_copyable_v<Value>, "copied on the IO thread's time");

public:
    explicit TripleBuffer(const Value& initial) noexcept { slots_.fill(initial); }

    TripleBuffer(const TripleBuffer&) = delete;
    TripleBuffer& operator=(const TripleBuffer&) = delete;

    void publish(const Value& value) noexcept {
        slots_[writing_] = value;
        writing_ = exchange_.exchange(writing_ | kFresh, std::memory_order_acq_rel) & kSlot;
    }

    /// The reference stays good until the next call.
    [[nodiscard]] const Value& latest() noexcept {
        if ((exchange_.load(std::memory_order_relaxed) & kFresh) != 0)
            reading_ = exchange_.exchange(reading_, std::memory_order_acq_rel) & kSlot;
        return slots_[reading_];
    }

private:
    static constexpr std::uint8_t kSlot = 3;
    static constexpr std::uint8_t kFresh = 4;

    std::array<Value, 3> slots_;
    std::uint8_t writing_ = 0;
    std::uint8_t reading_ = 1;
    std::atomic<std::uint8_t> exchange_{2};
};

} // namespace orvanta
