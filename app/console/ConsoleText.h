#pragma once

#include "core/dsp/EQPreset.h"

#include <cstddef>
#include <string>
#include <string_view>

/// What the console's bars and strips say: counts, helps, names and read-outs.
namespace orvanta::consoleText {

// Header, strip bar and footer.
/// "Recording 1 channel", "Recording 2 channels".
[[nodiscard]] std::string recordingBadge(std::size_t count);
/// "2 REC".
[[nodiscard]] std::string recordingCount(std::size_t count);
/// "1 Channel", "0 Channels".
[[nodiscard]] std::string channelCount(std::size_t count);
/// "72%", rounded.
[[nodiscard]] std::string masterReadOut(float volume);

// Level and loudness, linear.
/// "MUTE", "-∞ dB", "-4 dB".
[[nodiscard]] std::string levelReadOut(float level, bool isMuted);
/// Whether the level is to be warned of.
[[nodiscard]] bool isLevelHot(float level) noexcept;

// Pan, -1 to 1, and volume, linear.
/// "Center", "L15", "R50".
[[nodiscard]] std::string panReadOut(float balance);
/// "+2.6 dB", "-∞ dB".
[[nodiscard]] std::string volumeReadOut(float volume);
/// "Volume: +0.0 dB".
[[nodiscard]] std::string volumeLine(float volume, bool isMuted);
/// "Pan: L15".
[[nodiscard]] std::string panLine(float balance);

// Buttons.
[[nodiscard]] std::string_view muteHelp(bool isMuted) noexcept;
[[nodiscard]] std::string_view soloHelp(bool isSoloed) noexcept;
[[nodiscard]] std::string soloLabel(std::string_view app, bool isSoloed);
[[nodiscard]] std::string_view recordHelp(bool isRecording) noexcept;

// Noise gate.
[[nodiscard]] std::string_view gateState(bool isEnabled) noexcept;
[[nodiscard]] std::string_view gateIndicator(bool isOpen) noexcept;
/// "-48 dB", rounded.
[[nodiscard]] std::string thresholdReadOut(float threshold);

// Equaliser.
/// Under a strip's name; nothing for a flat one.
[[nodiscard]] std::string_view equalizerLine(const EQPreset& preset) noexcept;
/// "Flat", "Rock", "Custom".
[[nodiscard]] std::string_view equalizerPresetName(const EQPreset& preset) noexcept;
/// "+4 dB".
[[nodiscard]] std::string gainReadOut(float gain);

// Effects.
/// "+2.4 dB".
[[nodiscard]] std::string normalizationReadOut(float gainDB);
/// "Mono", "120%".
[[nodiscard]] std::string widthReadOut(float width);
/// "30%".
[[nodiscard]] std::string crossfeedReadOut(float amount);

// Profiles.
[[nodiscard]] std::string profileHelp(std::string_view profile, bool isActive);
/// "Update "Night"".
[[nodiscard]] std::string updateText(std::string_view profile);
[[nodiscard]] std::string updateHelp(std::string_view profile);

} // namespace orvanta::consoleText
