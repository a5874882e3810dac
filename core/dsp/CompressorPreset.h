#pragma once

#include "core/persistence/coding/JSONCoding.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace orvanta {

/// What the detector of a band follows.
enum class DetectionMode : std::uint8_t {
    peak, ///< the magnitude
    rms,  ///< the square
};

/// "peak" and "rms".
[[nodiscard]] std::string_view rawValue(DetectionMode mode) noexcept;

/// None for any other text.
[[nodiscard]] std::optional<DetectionMode> detectionModeFrom(std::string_view rawValue) noexcept;

/// One band of a compressor. At first it does nothing.
struct CompressorBandSettings {
    float threshold = 0.0F;   ///< dBFS
    float ratio = 1.0F;       ///< n:1; 1 is no compression
    float attackMs = 10.0F;   ///< ms
    float releaseMs = 100.0F; ///< ms
    float makeupGain = 0.0F;  ///< dB
    float lookaheadMs = 0.0F; ///< ms
    DetectionMode detectionMode = DetectionMode::peak;
    bool autoMakeup = false; ///< take the makeup from threshold and ratio, not from `makeupGain`

    friend bool operator==(const CompressorBandSettings&, const CompressorBandSettings&) = default;
};

struct NamedCompressorPreset;

/// What a user has set a compressor to: low, middle and high band. What was stored may hold any
/// other number of bands; a processor takes three and nothing else.
struct CompressorPreset {
    std::vector<CompressorBandSettings> bands;

    /// Whether every ratio is below 1.05.
    [[nodiscard]] bool isOff() const noexcept;

    /// In the order in which they are offered.
    [[nodiscard]] static std::span<const NamedCompressorPreset> allPresets();

    static const CompressorPreset& off;
    static const CompressorPreset& gentle;
    static const CompressorPreset& music;
    static const CompressorPreset& vocal;
    static const CompressorPreset& podcast;
    static const CompressorPreset& broadcast;
    static const CompressorPreset& nightMode;
    static const CompressorPreset& cinema;

    friend bool operator==(const CompressorPreset&, const CompressorPreset&) = default;
};

struct NamedCompressorPreset {
    std::string_view name;
    CompressorPreset preset;
};

/// Below this ratio a preset is off, and only above it a band compresses.
inline constexpr float kSmallestCompressorRatio = 1.05F;

/// Whether every ratio is below it. A ratio that is no number is not.
[[nodiscard]] bool isCompressorOff(std::span<const CompressorBandSettings> bands) noexcept;

/// Written as its text; `from_json` throws a `CodingError` for any other.
void to_json(coding::JSON& json, DetectionMode mode);
void from_json(const coding::JSON& json, DetectionMode& mode);

/// Written with all eight keys, in the order of the fields. Read without "lookaheadMs",
/// "detectionMode" and "autoMakeup" too, which older versions did not store: 0, peak and false
/// then. `from_json` throws a `CodingError` for anything else that is missing or of another type.
void to_json(coding::JSON& json, const CompressorBandSettings& settings);
void from_json(const coding::JSON& json, CompressorBandSettings& settings);

/// Written as {"bands": [...]}. Reading keeps as many bands as there are.
void to_json(coding::JSON& json, const CompressorPreset& preset);
void from_json(const coding::JSON& json, CompressorPreset& preset);

} // namespace orvanta
