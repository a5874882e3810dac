#include "tests/e2e/churn/ChurnedAudio.h"

namespace orvanta::test {

namespace {

class Churn : public ChurnedAudio {};

TEST_F(Churn, LeavesEveryTapOnTheDeviceItShouldPlayOn) {
    churn(100);
}

/// The long form, for the soak run.
TEST_F(Churn, SoakLeavesEveryTapOnTheDeviceItShouldPlayOn) {
    churn(500);
}

} // namespace

} // namespace orvanta::test
