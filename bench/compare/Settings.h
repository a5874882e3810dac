#pragma once

#include "core/dsp/CompressorPreset.h"

#include <array>
#include <cstddef>

/// One set of settings for everybody, so that all do the same work as near as it gets.
namespace orvanta::compare {

/// RMS of the music that everything is measured with.
inline constexpr double kMusicDB = -9;

struct EQBandSetting {
    enum class Shape { lowShelf, peaking, highShelf };
    Shape shape;
    double frequency; ///< Hz
    double q;
    double gainDB;
};

inline constexpr double kShelfQ = 0.707;
inline constexpr double kPeakQ = 1.4;

/// Every band at work, each against its neighbours so that none can pass for another.
inline constexpr std::array<EQBandSetting, 10> kTenBands = {{
    {EQBandSetting::Shape::lowShelf, 31, kShelfQ, 5},
    {EQBandSetting::Shape::peaking, 62, kPeakQ, -4},
    {EQBandSetting::Shape::peaking, 125, kPeakQ, 6},
    {EQBandSetting::Shape::peaking, 250, kPeakQ, -5},
    {EQBandSetting::Shape::peaking, 500, kPeakQ, 4},
    {EQBandSetting::Shape::peaking, 1000, kPeakQ, -6},
    {EQBandSetting::Shape::peaking, 2000, kPeakQ, 5},
    {EQBandSetting::Shape::peaking, 4000, kPeakQ, -4},
    {EQBandSetting::Shape::peaking, 8000, kPeakQ, 6},
    {EQBandSetting::Shape::highShelf, 16000, kShelfQ, -5},
}};

/// For equalisers that have no more.
inline constexpr std::array<EQBandSetting, 6> kSixBands = {
    {kTenBands[0], kTenBands[2], kTenBands[4], kTenBands[6], kTenBands[8], kTenBands[9]}};

/// Thresholds, ratios and times of the compressors. The make-up gain in it is ours alone: peers
/// apply theirs in another measure, and it costs nothing.
inline const CompressorPreset& compression() {
    return CompressorPreset::broadcast;
}

inline constexpr std::array<double, 2> kCrossovers = {250, 4000}; ///< Hz
inline constexpr double kKneeDB = 3;                              ///< whole width

inline constexpr double kCeilingDB = -6;
inline constexpr double kLimiterLookAheadMs = 1;
inline constexpr double kLimiterReleaseMs = 50;

inline constexpr double kCrossfeedAmount = 0.5;
inline constexpr int kCrossfeedCutoff = 700; ///< Hz

inline constexpr std::size_t kLoudnessFrames = 19200; ///< a reading every 400 ms

} // namespace orvanta::compare
