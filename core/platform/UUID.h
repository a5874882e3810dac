#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvanta {

/// A universally unique identifier (RFC 4122).
struct UUID {
    std::array<std::uint8_t, 16> bytes{};

    /// Version 4: nobody else has it.
    [[nodiscard]] static UUID random();

    /// Canonical form, in upper case.
    [[nodiscard]] std::string uuidString() const;

    /// The one that a canonical form names, in letters of either case; none for any other text.
    [[nodiscard]] static std::optional<UUID> from(std::string_view text) noexcept;

    friend bool operator==(const UUID&, const UUID&) = default;
    friend auto operator<=>(const UUID&, const UUID&) = default;
};

} // namespace orvanta
