#pragma once

#include <cstdint>
#include <string_view>

namespace orvanta {

/// How a front end of automation lets its user choose a number.
enum class IntentControlStyle : std::uint8_t { field, slider, stepper };

/// What automation tells its user of a whole number that an intent takes. Has no range: the intent
/// keeps the limits by itself, so that whatever is given has an answer.
struct IntentParameter {
    std::string_view name;
    std::string_view title;
    std::string_view description;
    /// What holds where none is given.
    std::int64_t defaultValue;
    IntentControlStyle controlStyle;
};

} // namespace orvanta
