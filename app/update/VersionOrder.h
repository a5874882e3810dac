#pragma once

#include <compare>
#include <string_view>

namespace orvanta {

/// Which of two versions is older. Runs of digits count as numbers ("1.9" before "1.10"), a missing
/// number as zero ("1.0" like "1.0.0"), words as stages before a release ("1.0b2" before "1.0",
/// "1.0a1" before "1.0b1"), in the alphabet's order whatever the case of their letters. A "v"
/// before the first number says nothing, and what is neither digit nor letter parts the others.
[[nodiscard]] std::weak_ordering compareVersions(std::string_view a, std::string_view b);

} // namespace orvanta
