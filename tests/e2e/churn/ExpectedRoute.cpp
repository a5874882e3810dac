#include "tests/e2e/churn/ExpectedRoute.h"

namespace orvanta::test {

namespace {

/// The engine's longest chain of delays is 2 s; its calls in between wait for the server.
constexpr double passesTake = 5;
constexpr double shortAbsence = 1;

} // namespace

void ExpectedRoute::choose(const Route& route) {
    chosen_ = route;
    isBackAtOnce_ = false;
}

void ExpectedRoute::deviceLeft(const std::string& uid, const std::string& defaultUID, double now) {
    if (chosen_.value_or(defaultUID) != uid)
        return;
    passesDueUntil_ = now + passesTake;
    if (!chosen_)
        return;
    lost_ = chosen_;
    lostAt_ = now;
    chosen_.reset();
}

void ExpectedRoute::deviceReturned(const std::string& uid, double now) {
    if (lost_ == uid && now < lostAt_ + shortAbsence)
        isBackAtOnce_ = true;
}

void ExpectedRoute::defaultMoved(double now) {
    if (!chosen_)
        passesDueUntil_ = now + passesTake;
}

bool ExpectedRoute::allows(const Route& actual, double now) const {
    return actual == chosen_ || (!actual && now < passesDueUntil_) ||
           (isBackAtOnce_ && actual == lost_);
}

} // namespace orvanta::test
