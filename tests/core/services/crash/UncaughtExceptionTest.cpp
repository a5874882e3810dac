#include "core/services/crash/UncaughtException.h"

#include "tests/core/services/support/Deaths.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace orvanta::crash {
namespace {

template <class Exception>
UncaughtException described(const Exception& exception) {
    try {
        throw exception;
    } catch (...) {
        return {currentExceptionName(), currentExceptionReason()};
    }
}

TEST(UncaughtException, HasTheNameOfItsTypeAndItsReason) {
    const auto exception = described(std::out_of_range("no band 11"));
    EXPECT_EQ(exception.name, "std::out_of_range");
    EXPECT_EQ(exception.reason, "no band 11");
}

TEST(UncaughtException, HasNoReasonWhereItsTypeTellsNone) {
    EXPECT_EQ(described(42).name, "int");
    EXPECT_EQ(described(42).reason, std::nullopt);
    EXPECT_EQ(described(test::Mixer::DeviceLost()).name, "orvanta::test::Mixer::DeviceLost");
    EXPECT_EQ(described(test::Mixer::DeviceLost()).reason, std::nullopt);
    EXPECT_EQ(described(std::pair(1, 2)).name, "std::pair<int, int>");
}

TEST(UncaughtException, MayHaveAnEmptyReason) {
    EXPECT_EQ(described(std::runtime_error("")).reason, "");
}

TEST(UncaughtException, IsNamedForTheEndWhereThereIsNone) {
    EXPECT_EQ(currentExceptionName(), "std::terminate");
    EXPECT_EQ(currentExceptionReason(), std::nullopt);
}

TEST(UncaughtException, IsStillThereAfterItWasLookedAt) {
    try {
        throw std::runtime_error("first");
    } catch (...) {
        EXPECT_EQ(currentExceptionReason(), "first");
        EXPECT_EQ(currentExceptionReason(), "first");
        EXPECT_THROW(throw, std::runtime_error);
    }
}

} // namespace
} // namespace orvanta::crash
