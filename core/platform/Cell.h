#pragma once

#include <atomic>
#include <type_traits>

namespace orvanta {

/// One word shared by a control thread and an IO thread. Read and written whole, in the machine
/// code of a plain load and store, and ordered against nothing: a reader may see the old value for
/// one more cycle, which everybody who uses a cell can live with.
template <class Value>
class Cell {
    static_assert(std::is_trivially_copyable_v<Value>);
    static_assert(std::atomic<Value>::is_always_lock_free);

public:
    constexpr Cell() noexcept = default;

    constexpr explicit Cell(Value initial) noexcept : word_(initial) {}

    [[nodiscard]] Value load() const noexcept { return word_.load(std::memory_order_relaxed); }

    void store(Value value) noexcept { word_.store(value, std::memory_order_relaxed); }

private:
    std::atomic<Value> word_{};
};

} // namespace orvanta
