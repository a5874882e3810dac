// Whatever happens, in whatever order, the model is where a plainer telling of it is.

#include "tests/core/model/MixerOperations.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace orvanta::test {
namespace {

constexpr int kLongest = 1000;

RC_GTEST_PROP(MixerViewModel, IsWhereAPlainerTellingOfItIsAfterEveryOperation, ()) {
    const Operations operations = *anyOperations(kLongest);
    MixerWorld world;
    for (const Operation& operation : operations.list) {
        operation.run(world);
        if (const std::string differences = world.differences(); !differences.empty())
            RC_FAIL(fmt::format("after \"{}\":\n{}", operation.text, differences));
    }
}

} // namespace
} // namespace orvanta::test
