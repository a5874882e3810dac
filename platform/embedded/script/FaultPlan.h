#pragma once

#include "platform/embedded/script/Fault.h"

#include <mutex>
#include <vector>

namespace orvanta::embedded {

/// The faults in force. Safe from all threads.
class FaultPlan {
public:
    using Handle = unsigned;

    /// Of several that fit a call, the one added first strikes.
    Handle add(Fault fault);

    /// One that has gone by itself is passed over.
    void remove(Handle handle);
    void clear();

    /// Faults that may still strike.
    [[nodiscard]] std::size_t count() const;

    /// The fault that strikes this call, counted as one of its times.
    std::optional<Fault> strike(Operation operation, AudioObjectID object,
                                const std::optional<AudioObjectPropertyAddress>& address);

private:
    struct Entry {
        Handle handle = 0;
        Fault fault;
    };

    mutable std::mutex mutex_;
    std::vector<Entry> entries_;
    Handle lastHandle_ = 0;
};

} // namespace orvanta::embedded
