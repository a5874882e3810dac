#pragma once

#include <span>
#include <string_view>

namespace orvanta {

/// A symbol by the name that the views use, and what the icon font calls the glyph for it.
struct Symbol {
    std::string_view name;
    std::string_view glyph;
};

/// All that the views show.
[[nodiscard]] std::span<const Symbol> symbols() noexcept;

/// The ligature that draws the symbol in the icon font; empty for a name that is not among
/// `symbols`.
[[nodiscard]] std::string_view glyphOf(std::string_view name) noexcept;

} // namespace orvanta
