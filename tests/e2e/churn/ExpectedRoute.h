#pragma once

#include <optional>
#include <string>

namespace orvanta::test {

/// A device by its UID, or none for the default output and whatever follows it.
using Route = std::optional<std::string>;

/// Where a tap may be routed, by the rules of the engine alone: a chosen device is kept until it is
/// lost, and then it is the default for good. Passes that a change has set off may still be on
/// their way for some seconds and bring the tap to the default, whatever was chosen meanwhile.
/// Times are seconds of the monotonic clock.
class ExpectedRoute {
public:
    void choose(const Route& route);
    void deviceLeft(const std::string& uid, const std::string& defaultUID, double now);
    /// A device that was away for so short a time may never have been missed.
    void deviceReturned(const std::string& uid, double now);
    void defaultMoved(double now);

    [[nodiscard]] bool allows(const Route& actual, double now) const;

    /// Takes what the tap does, which must be allowed, as what it goes on to do.
    void adopt(const Route& actual) { chosen_ = actual; }

private:
    Route chosen_;
    Route lost_;
    double lostAt_ = 0;
    bool isBackAtOnce_ = false;
    double passesDueUntil_ = 0;
};

} // namespace orvanta::test
