#pragma once

#include <map>
#include <memory>
#include <string>
#include <variant>

namespace orvanta {

/// A value of the user's defaults. Long ones are shared between memory and what is yet to be
/// saved.
struct DefaultsData {
    std::shared_ptr<const std::string> bytes;
};

struct DefaultsText {
    std::shared_ptr<const std::string> text;
};

using DefaultsValue = std::variant<bool, DefaultsText, DefaultsData>;

using DefaultsValues = std::map<std::string, DefaultsValue, std::less<>>;

} // namespace orvanta
