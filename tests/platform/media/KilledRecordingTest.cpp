#include "tests/platform/media/support/KilledRecording.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

TEST(KilledRecording, WAVHoldsAllThatWasHandedOver) {
    expectKilledWAVFilesToBeWhole(20);
}

TEST(KilledRecording, M4AHoldsAllButTheLastSecond) {
    expectKilledM4AFilesToBeWhole(20);
}

} // namespace
} // namespace orvanta::test
