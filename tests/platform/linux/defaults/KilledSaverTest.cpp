#include "tests/platform/linux/defaults/support/KilledSaver.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

TEST(KilledSaver, LeavesTheOldOrTheNewStateAndAllThatWasAcknowledged) {
    expectOldOrNewSettingsAfterKills(50);
}

} // namespace
} // namespace orvanta::test
