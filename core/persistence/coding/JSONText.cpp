#include "core/persistence/coding/JSONText.h"

#include <nlohmann/json.hpp>

#include <array>
#include <charconv>
#include <cmath>

namespace orvanta::coding {
namespace {

/// The library's own writer gives some numbers more digits than they need.
void appendNumber(std::string& out, double number) {
    if (!std::isfinite(number))
        throw CodingError("JSON has no number for what is not finite");
    std::array<char, 64> digits{};
    char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    out.append(digits.data(), end);
}

void appendString(std::string& out, const JSON& string) {
    try {
        out += string.dump();
    } catch (const JSON::exception& error) {
        throw CodingError(error.what());
    }
}

void append(std::string& out, const JSON& value);

void appendObject(std::string& out, const JSON& object) {
    char before = '{';
    for (const auto& [key, member] : object.items()) {
        out += before;
        appendString(out, JSON(key));
        out += ':';
        append(out, member);
        before = ',';
    }
    out += object.empty() ? "{}" : "}";
}

void appendArray(std::string& out, const JSON& array) {
    char before = '[';
    for (const JSON& element : array) {
        out += before;
        append(out, element);
        before = ',';
    }
    out += array.empty() ? "[]" : "]";
}

void append(std::string& out, const JSON& value) {
    if (value.is_object())
        appendObject(out, value);
    else if (value.is_array())
        appendArray(out, value);
    else if (value.is_number_float())
        appendNumber(out, value.get<double>());
    else
        appendString(out, value);
}

} // namespace

std::string text(const JSON& value) {
    std::string out;
    append(out, value);
    return out;
}

std::string text(std::string_view string) {
    std::string out;
    appendString(out, JSON(string));
    return out;
}

JSON parsed(std::string_view text) {
    try {
        return JSON::parse(text);
    } catch (const JSON::exception& error) {
        throw CodingError(error.what());
    }
}

} // namespace orvanta::coding
