#pragma once

#include <string>
#include <string_view>

namespace orvanta {

/// The address, tidied and encoded, if it is one on the web at which nobody can answer in another's
/// place (https:); else empty.
[[nodiscard]] std::string safeWebAddress(std::string_view text);

} // namespace orvanta
