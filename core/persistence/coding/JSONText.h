#pragma once

#include "core/persistence/coding/JSONCoding.h"

#include <string>
#include <string_view>

namespace orvanta::coding {

/// `value` as UTF-8 text without a space: members in their order, every number with the fewest
/// digits that read back as the same. Throws for a string that is no UTF-8 and for a number that is
/// not finite.
[[nodiscard]] std::string text(const JSON& value);

/// A string as JSON, in quotes. Throws when it is no UTF-8.
[[nodiscard]] std::string text(std::string_view string);

/// The value that a whole text tells. Throws when there is none, or something behind it.
[[nodiscard]] JSON parsed(std::string_view text);

} // namespace orvanta::coding
