#pragma once

#include "app/popover/AppSections.h"
#include "core/dsp/CompressorPreset.h"
#include "core/dsp/EQPreset.h"
#include "core/model/MixerViewModel.h"

#include <optional>
#include <string>

namespace orvanta {

/// What a row shows of its application, but for what moves by itself: its meters, its gate's state
/// and the time that it has been recorded for. Two that are equal look the same.
struct RowState {
    std::string name;
    IconRef icon;
    AppSection section = AppSection::idle;
    bool isTapped = false;
    bool isMuted = false;
    bool isRecording = false;
    float volume = 1.0F;
    float balance = 0.0F;
    EQPreset eq;
    CompressorPreset compressor;
    bool isGateEnabled = false;
    float gateThreshold = -60.0F; ///< dB
    /// Nothing for the system's default.
    std::optional<std::string> outputUID;

    friend bool operator==(const RowState&, const RowState&) = default;
};

/// As the model has it now; defaults for what it has not.
[[nodiscard]] RowState rowStateOf(const MixerViewModel& model, const AudioApp& app, Seconds now);

} // namespace orvanta
