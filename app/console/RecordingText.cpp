#include "app/console/RecordingText.h"

#include <fmt/format.h>

#include <cstdint>

namespace orvanta::recordingText {
namespace {

constexpr std::string_view kAAC = "AAC 256 kbps";

} // namespace

std::string_view buttonText(bool isRecording) noexcept {
    return isRecording ? "Stop Recording" : "Start Recording";
}

std::string duration(double seconds) {
    const auto tenths =
        seconds > 0.0 && seconds < 1e9 ? static_cast<std::int64_t>(seconds * 10) : 0;
    return fmt::format("{:02}:{:02}.{}", tenths / 600, tenths / 10 % 60, tenths % 10);
}

std::string_view formatTitle(RecordingFormat format) noexcept {
    return format == RecordingFormat::wav ? "WAV" : "M4A";
}

std::string_view formatDetail(RecordingFormat format) noexcept {
    return format == RecordingFormat::wav ? "Lossless 32-bit" : kAAC;
}

std::string_view modeTitle(RecordingMode mode) noexcept {
    switch (mode) {
    case RecordingMode::processed:
        return "Processed";
    case RecordingMode::original:
        return "Original";
    case RecordingMode::both:
        break;
    }
    return "Both";
}

std::string_view modeDetail(RecordingMode mode) noexcept {
    switch (mode) {
    case RecordingMode::processed:
        return "After EQ, compression, gate";
    case RecordingMode::original:
        return "Raw app audio, unprocessed";
    case RecordingMode::both:
        break;
    }
    return "Two files simultaneously";
}

std::string_view signal(RecordingMode mode) noexcept {
    switch (mode) {
    case RecordingMode::processed:
        return "Processed (post-EQ, post-compressor)";
    case RecordingMode::original:
        return "Original (raw app audio)";
    case RecordingMode::both:
        break;
    }
    return "Both — 2 files simultaneously";
}

std::string_view bitDepth(RecordingFormat format) noexcept {
    return format == RecordingFormat::wav ? "32-bit float" : kAAC;
}

std::string folder(const std::filesystem::path& folder, const std::filesystem::path& home) {
    const auto inside = folder.lexically_relative(home);
    if (home.empty() || inside.empty() || *inside.begin() == "..")
        return folder.string();
    return inside == "." ? "~" : "~/" + inside.string();
}

} // namespace orvanta::recordingText
