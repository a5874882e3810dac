#pragma once

#include <QString>
#include <string_view>

namespace orvanta {

/// UTF-8 as Qt has it.
[[nodiscard]] inline QString qText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace orvanta
