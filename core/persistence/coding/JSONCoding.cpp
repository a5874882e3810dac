#include "core/persistence/coding/JSONCoding.h"

#include <nlohmann/json.hpp>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace orvanta::coding {
namespace {

/// Whole numbers below this are exact in 64 bits.
constexpr float kLargestInteger = 9e18F;

[[noreturn]] void fail(const JSON& value, const char* wanted) {
    throw CodingError(std::string("found ") + value.type_name() + " where there must be " + wanted);
}

double shortestDecimal(float value) {
    std::array<char, 64> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), value);
    double number = 0;
    std::from_chars(text.data(), written.ptr, number);
    return number;
}

} // namespace

JSON encoded(float value) {
    if (!std::isfinite(value))
        throw CodingError("JSON has no number for what is not finite");
    const bool isNegativeZero = value == 0.0F && std::signbit(value);
    if (std::trunc(value) == value && std::fabs(value) < kLargestInteger && !isNegativeZero)
        return static_cast<std::int64_t>(value);
    return shortestDecimal(value);
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

float decodedFloat(const JSON& value) {
    if (!value.is_number())
        fail(value, "a number");
    const auto number = value.get<double>();
    if (!(std::fabs(number) <= static_cast<double>(std::numeric_limits<float>::max())))
        throw CodingError("a number is too large");
    return static_cast<float>(number);
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
    if (!value.is_number())
        fail(value, "a number");
    const auto number = value.get<double>();
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
