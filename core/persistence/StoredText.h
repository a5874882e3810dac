#pragma once

#include "core/persistence/coding/JSONText.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace orvanta {

/// The JSON of one record within a stored value, made when the record changes and kept for the
/// next saves of its neighbours. Absent where the record has none, because of a number that is not
/// finite or a text that is no UTF-8.
using StoredText = std::optional<std::string>;

template <class Record>
[[nodiscard]] StoredText storedTextOf(const Record& record) {
    try {
        return coding::text(coding::JSON(record));
    } catch (const coding::CodingError&) {
        return std::nullopt;
    }
}

/// As a member of an object.
template <class Record>
[[nodiscard]] StoredText storedTextOf(std::string_view key, const Record& record) {
    try {
        return coding::text(key) + ':' + coding::text(coding::JSON(record));
    } catch (const coding::CodingError&) {
        return std::nullopt;
    }
}

/// The texts of all `records` between two brackets; absent when one has none, because a value is
/// stored whole or not at all. `textOf` gives a record's `StoredText` by reference.
template <class Records, class TextOf>
[[nodiscard]] StoredText joinedText(char opening, const Records& records, char closing,
                                    const TextOf& textOf) {
    std::size_t length = 2;
    for (const auto& record : records) {
        const StoredText& text = textOf(record);
        if (!text)
            return std::nullopt;
        length += text->size() + 1;
    }
    std::string joined;
    joined.reserve(length);
    joined += opening;
    for (const auto& record : records) {
        if (joined.size() > 1)
            joined += ',';
        joined += *textOf(record);
    }
    joined += closing;
    return joined;
}

} // namespace orvanta
