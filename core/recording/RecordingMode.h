#pragma once

#include "core/persistence/coding/JSONCoding.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace orvanta {

/// Which side of the effects a recording takes.
enum class RecordingMode : std::uint8_t {
    processed, ///< what the device gets
    original,  ///< what the program gives
    both,      ///< a file of each
};

/// In the order in which they are offered.
[[nodiscard]] std::span<const RecordingMode> allRecordingModes() noexcept;

/// "processed", "original" and "both"; also the coding.
[[nodiscard]] std::string_view rawValue(RecordingMode mode) noexcept;
/// None for any other text.
[[nodiscard]] std::optional<RecordingMode> recordingModeFrom(std::string_view rawValue) noexcept;

[[nodiscard]] std::string_view displayName(RecordingMode mode) noexcept;

void to_json(coding::JSON& json, RecordingMode mode);
/// Throws `coding::CodingError` for what is no mode.
void from_json(const coding::JSON& json, RecordingMode& mode);

} // namespace orvanta
