#pragma once

#include <string_view>

namespace orvanta {

/// A picture that a profile can have.
struct ProfileIcon {
    std::string_view symbol; ///< as it is stored
    std::string_view label;  ///< for people to read
};

} // namespace orvanta
