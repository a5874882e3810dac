#pragma once

#include "core/platform/OSStatus.h"
#include "tests/support/EngineRig.h"

#include <limits>

/// What the tests of the engine call the same.
namespace orvanta::test {

inline constexpr auto pid = EngineRig::pid;
/// What no audio system answers by itself.
inline constexpr OSStatus refusal = -4321;
inline constexpr float nan = std::numeric_limits<float>::quiet_NaN();

} // namespace orvanta::test
