#pragma once

#include "core/recording/RecordingFormat.h"
#include "core/recording/RecordingMode.h"

#include <filesystem>
#include <string>
#include <string_view>

/// What the recording card says.
namespace orvanta::recordingText {

[[nodiscard]] std::string_view buttonText(bool isRecording) noexcept;
/// "12:07.4"; hours count as minutes, tenths are cut off.
[[nodiscard]] std::string duration(double seconds);

/// "WAV", and "Lossless 32-bit" under it.
[[nodiscard]] std::string_view formatTitle(RecordingFormat format) noexcept;
[[nodiscard]] std::string_view formatDetail(RecordingFormat format) noexcept;
/// "Processed", and "After EQ, compression, gate" under it.
[[nodiscard]] std::string_view modeTitle(RecordingMode mode) noexcept;
[[nodiscard]] std::string_view modeDetail(RecordingMode mode) noexcept;

/// In the summary.
inline constexpr std::string_view sampleRate = "48 kHz, Stereo";
[[nodiscard]] std::string_view signal(RecordingMode mode) noexcept;
[[nodiscard]] std::string_view bitDepth(RecordingFormat format) noexcept;

/// A folder as people know it: "~/Music" within their own.
[[nodiscard]] std::string folder(const std::filesystem::path& folder,
                                 const std::filesystem::path& home);

} // namespace orvanta::recordingText
