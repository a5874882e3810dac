#include "core/persistence/coding/JSONCoding.h"

#include <nlohmann/json.hpp>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <system_error>

namespace orvanta::coding {
namespace {

/// Whole numbers below this are exact in 64 bits.
constexpr double kLargestInteger = 9e18;

[[noreturn]] void fail(const JSON& value, const char* wanted) {
    throw CodingError(std::string("found ") + value.type_name() + " where there must be " + wanted);
}

/// What the shortest decimal of `value` reads as in another precision; nothing for a number beyond
/// it.
template <class Result, class Number>
std::optional<Result> byShortestDecimal(Number value) {
    std::array<char, 64> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), value);
    Result result = 0;
    const auto read = std::from_chars(text.data(), written.ptr, result);
    // What is too small to be told from nothing is nothing.
    if (read.ec != std::errc() && std::fabs(value) > 1)
        return std::nullopt;
    return result;
}

} // namespace

JSON encoded(double value) {
    const bool isNegativeZero = value == 0 && std::signbit(value);
    if (std::trunc(value) == value && std::fabs(value) < kLargestInteger && !isNegativeZero)
        return static_cast<std::int64_t>(value);
    return value;
}

JSON encoded(float value) {
    if (!std::isfinite(value))
        return static_cast<double>(value);
    return encoded(*byShortestDecimal<double>(value));
}

const JSON* optional(const JSON& object, const char* key) {
    if (!object.is_object())
        fail(object, "an object");
    const auto found = object.find(key);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

const JSON& required(const JSON& object, const char* key) {
    const JSON* const value = optional(object, key);
    if (value == nullptr)
        throw CodingError(std::string("no value for \"") + key + '"');
    return *value;
}

double decodedDouble(const JSON& value) {
    if (!value.is_number())
        fail(value, "a number");
    return value.get<double>();
}

float decodedFloat(const JSON& value) {
    // Not rounded twice: the decimal was a float's.
    const auto number = byShortestDecimal<float>(decodedDouble(value));
    if (!number)
        throw CodingError("a number is too large");
    return *number;
}

bool decodedBool(const JSON& value) {
    if (!value.is_boolean())
        fail(value, "a Boolean");
    return value.get<bool>();
}

std::string decodedString(const JSON& value) {
    if (!value.is_string())
        fail(value, "a string");
    return value.get<std::string>();
}

int decodedInt(const JSON& value) {
    const double number = decodedDouble(value);
    if (std::trunc(number) != number || number < std::numeric_limits<int>::min() ||
        number > std::numeric_limits<int>::max())
        throw CodingError("a number is no integer of 32 bits");
    return static_cast<int>(number);
}

const JSON& decodedArray(const JSON& value) {
    if (!value.is_array())
        fail(value, "an array");
    return value;
}

} // namespace orvanta::coding
