#pragma once

#include <nlohmann/json_fwd.hpp>

#include <stdexcept>
#include <string>

/// What all records share when they become JSON and come back. Records give the keys, in the order
/// in which they are written. Headers declare only; who makes or takes JSON includes the library.
namespace orvanta::coding {

using JSON = nlohmann::ordered_json;

/// Something is not there, is of another type, or does not fit. The text says which and why.
class CodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The number whose shortest text is the float's: 3 and 0.1, not 3.0 and 0.10000000149011612. What
/// is not finite is taken and has no text: a value that fails while it is made would leak.
[[nodiscard]] JSON encoded(float value);
/// A whole number without a fraction: 3, not 3.0.
[[nodiscard]] JSON encoded(double value);

/// The value of a key that must be there. Throws when it is not, or when `object` is none.
[[nodiscard]] const JSON& required(const JSON& object, const char* key);

/// The value of a key that may be missing or null: null then. Throws when `object` is none.
[[nodiscard]] const JSON* optional(const JSON& object, const char* key);

/// Each throws when `value` is of another type: a Boolean is no number, a number no Boolean.
[[nodiscard]] float decodedFloat(const JSON& value);
[[nodiscard]] double decodedDouble(const JSON& value);
[[nodiscard]] bool decodedBool(const JSON& value);
[[nodiscard]] std::string decodedString(const JSON& value);
/// A whole number within the range of Int32.
[[nodiscard]] int decodedInt(const JSON& value);
/// Throws when `value` is no array.
[[nodiscard]] const JSON& decodedArray(const JSON& value);

} // namespace orvanta::coding
