#include "core/recording/RecordingFormat.h"

#include "core/persistence/coding/RawValues.h"

#include <nlohmann/json.hpp>

#include <array>

namespace orvanta {

std::span<const RecordingFormat> allRecordingFormats() noexcept {
    static constexpr std::array kAll{RecordingFormat::wav, RecordingFormat::m4a};
    return kAll;
}

std::string_view rawValue(RecordingFormat format) noexcept {
    return format == RecordingFormat::wav ? "wav" : "m4a";
}

std::optional<RecordingFormat> recordingFormatFrom(std::string_view rawValue) noexcept {
    return coding::fromRawValue(allRecordingFormats(), rawValue);
}

std::string_view displayName(RecordingFormat format) noexcept {
    return format == RecordingFormat::wav ? "WAV (Lossless)" : "M4A (Compressed)";
}

std::string_view fileExtension(RecordingFormat format) noexcept {
    return format == RecordingFormat::wav ? "wav" : "m4a";
}

void to_json(coding::JSON& json, RecordingFormat format) {
    json = rawValue(format);
}

void from_json(const coding::JSON& json, RecordingFormat& format) {
    format = coding::decodedRawValue(allRecordingFormats(), json, "recording format");
}

} // namespace orvanta
