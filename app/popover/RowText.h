#pragma once

#include "core/dsp/EQPreset.h"

#include <cstddef>
#include <string>
#include <string_view>

/// What a row of the panel says: helps, names, values and hints of its controls, and its read-outs.
namespace orvanta::rowText {

// Tap and record.
[[nodiscard]] std::string_view tapHelp(bool isTapped) noexcept;
[[nodiscard]] std::string tapLabel(std::string_view app, bool isTapped);
[[nodiscard]] std::string_view tapHint(bool isTapped) noexcept;
[[nodiscard]] std::string_view recordHelp(bool isRecording) noexcept;
[[nodiscard]] std::string recordLabel(std::string_view app, bool isRecording);
[[nodiscard]] std::string recordValue(bool isRecording, double seconds);
/// "12:07"; hours count as minutes.
[[nodiscard]] std::string elapsedTime(double seconds);

// Volume and mute.
[[nodiscard]] std::string volumeLabel(std::string_view app);
/// "85 percent", beyond unity "120 percent, boosted".
[[nodiscard]] std::string volumeValue(float volume);
[[nodiscard]] std::string_view muteSymbol(bool isMuted) noexcept;
[[nodiscard]] std::string_view muteHelp(bool isMuted) noexcept;
[[nodiscard]] std::string muteLabel(std::string_view app, bool isMuted);

// Output.
[[nodiscard]] std::string outputLabel(std::string_view app);

// Equaliser.
[[nodiscard]] std::string equalizerLabel(std::string_view app);
[[nodiscard]] std::string_view equalizerValue(const EQPreset& preset) noexcept;
[[nodiscard]] std::string_view expansionHint(bool isExpanded) noexcept;
/// The mode button names the present mode and is labelled with the other one.
[[nodiscard]] std::string_view modeText(bool isTenBand) noexcept;
[[nodiscard]] std::string_view modeLabel(bool isTenBand) noexcept;
/// "Bass", "Mid", "Treble".
[[nodiscard]] std::string_view simpleBandText(EQSimpleBand band) noexcept;
/// "31 Hz EQ for Vinyl".
[[nodiscard]] std::string bandLabel(std::size_t band, std::string_view app);
/// "+4".
[[nodiscard]] std::string gainReadOut(float gain);
/// "+4 decibels".
[[nodiscard]] std::string gainValue(float gain);
/// Whether a band's gain is worth colouring.
[[nodiscard]] bool isGainLit(float gain) noexcept;

// Balance, -1 to 1.
[[nodiscard]] std::string balanceLabel(std::string_view app);
/// "Center", "20 percent left".
[[nodiscard]] std::string balanceValue(float balance);
/// "20% Left"; nothing near the middle.
[[nodiscard]] std::string balanceReadOut(float balance);
[[nodiscard]] bool isLeftLit(float balance) noexcept;
[[nodiscard]] bool isRightLit(float balance) noexcept;

// Noise gate; the threshold in dB.
[[nodiscard]] std::string gateLabel(std::string_view app);
[[nodiscard]] std::string_view gateHelp(bool isOpen) noexcept;
/// "-48 dB".
[[nodiscard]] std::string thresholdReadOut(float threshold);
/// "-48 decibels".
[[nodiscard]] std::string thresholdValue(float threshold);

// Compressor.
[[nodiscard]] std::string compressorLabel(std::string_view app);

} // namespace orvanta::rowText
