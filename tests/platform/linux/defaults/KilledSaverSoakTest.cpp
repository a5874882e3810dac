#include "tests/platform/linux/defaults/support/KilledSaver.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

TEST(KilledSaverSoak, LeavesTheOldOrTheNewStateAThousandTimes) {
    expectOldOrNewSettingsAfterKills(1000);
}

} // namespace
} // namespace orvanta::test
