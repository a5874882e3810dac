#pragma once

#include "core/platform/WallClock.h"

namespace orvanta {

/// A moment, kept to the precision that it is stored with.
struct Date {
    /// Seconds since 2001-01-01 00:00:00 UTC.
    double timeIntervalSinceReferenceDate = 0;

    Date() = default;

    explicit constexpr Date(double seconds) : timeIntervalSinceReferenceDate(seconds) {}

    explicit Date(WallTime time);

    friend bool operator==(const Date&, const Date&) = default;
    friend auto operator<=>(const Date&, const Date&) = default;
};

} // namespace orvanta
