#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

struct spa_dict;

namespace orvanta::pipewire {

/// The properties of one server object. Every one of them may be missing, so every read has an
/// answer for that.
class PropertyMap {
public:
    /// Takes over every entry of `dict` (may be null); an entry without a value is removed.
    void merge(const spa_dict* dict);

    void set(std::string_view key, std::string_view value);

    /// Empty when missing.
    [[nodiscard]] const std::string& text(std::string_view key) const;

    [[nodiscard]] bool has(std::string_view key) const { return !text(key).empty(); }

    /// Nothing when missing or not a whole non-negative number.
    [[nodiscard]] std::optional<std::uint32_t> number(std::string_view key) const;

    /// "true" and "1" are true, everything else is not.
    [[nodiscard]] bool isTrue(std::string_view key) const;

private:
    std::map<std::string, std::string, std::less<>> entries_;
};

/// The whole of `text` as a number, nothing if it is anything else.
std::optional<std::uint32_t> parseNumber(std::string_view text);

} // namespace orvanta::pipewire
