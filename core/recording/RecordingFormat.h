#pragma once

#include "core/persistence/coding/JSONCoding.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace orvanta {

/// What kind of file a recording becomes.
enum class RecordingFormat : std::uint8_t {
    wav, ///< 32-bit float
    m4a, ///< AAC at 256 kbit/s
};

/// In the order in which they are offered.
[[nodiscard]] std::span<const RecordingFormat> allRecordingFormats() noexcept;

/// "wav" and "m4a"; also the coding.
[[nodiscard]] std::string_view rawValue(RecordingFormat format) noexcept;
/// None for any other text.
[[nodiscard]] std::optional<RecordingFormat>
recordingFormatFrom(std::string_view rawValue) noexcept;

[[nodiscard]] std::string_view displayName(RecordingFormat format) noexcept;
/// Without the dot.
[[nodiscard]] std::string_view fileExtension(RecordingFormat format) noexcept;

void to_json(coding::JSON& json, RecordingFormat format);
/// Throws `coding::CodingError` for what is no format.
void from_json(const coding::JSON& json, RecordingFormat& format);

} // namespace orvanta
