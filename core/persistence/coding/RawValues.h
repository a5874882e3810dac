#pragma once

#include "core/persistence/coding/JSONCoding.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orvanta::coding {

/// The one of `all` whose `rawValue` is `text`; none where there is no such one.
template <class Enumeration>
[[nodiscard]] std::optional<Enumeration> fromRawValue(std::span<const Enumeration> all,
                                                      std::string_view text) noexcept {
    for (const Enumeration each : all) {
        if (rawValue(each) == text)
            return each;
    }
    return std::nullopt;
}

/// The one of `all` that `json` is the raw value of. Throws, and says that it is no `what`, where
/// there is none.
template <class Enumeration>
[[nodiscard]] Enumeration decodedRawValue(std::span<const Enumeration> all, const JSON& json,
                                          const char* what) {
    const auto known = fromRawValue(all, decodedString(json));
    if (!known)
        throw CodingError(std::string("no ") + what + ": " + json.dump());
    return *known;
}

} // namespace orvanta::coding
