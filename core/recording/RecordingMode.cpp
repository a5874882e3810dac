#include "core/recording/RecordingMode.h"

#include "core/persistence/coding/RawValues.h"

#include <nlohmann/json.hpp>

#include <array>

namespace orvanta {
namespace {

struct Names {
    std::string_view raw;
    std::string_view display;
};

constexpr Names kNames[] = {
    {"processed", "Processed"},
    {"original", "Original"},
    {"both", "Both"},
};

} // namespace

std::span<const RecordingMode> allRecordingModes() noexcept {
    static constexpr std::array kAll{RecordingMode::processed, RecordingMode::original,
                                     RecordingMode::both};
    return kAll;
}

std::string_view rawValue(RecordingMode mode) noexcept {
    return kNames[static_cast<std::size_t>(mode)].raw;
}

std::optional<RecordingMode> recordingModeFrom(std::string_view rawValue) noexcept {
    return coding::fromRawValue(allRecordingModes(), rawValue);
}

std::string_view displayName(RecordingMode mode) noexcept {
    return kNames[static_cast<std::size_t>(mode)].display;
}

void to_json(coding::JSON& json, RecordingMode mode) {
    json = rawValue(mode);
}

void from_json(const coding::JSON& json, RecordingMode& mode) {
    mode = coding::decodedRawValue(allRecordingModes(), json, "recording mode");
}

} // namespace orvanta
