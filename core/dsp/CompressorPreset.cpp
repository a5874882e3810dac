#include "core/dsp/CompressorPreset.h"

#include "core/persistence/coding/RawValues.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace orvanta {
namespace {

struct Row {
    std::string_view name;
    std::array<CompressorBandSettings, 3> bands; ///< low, middle, high
};

constexpr auto peak = DetectionMode::peak;
constexpr auto rms = DetectionMode::rms;
constexpr std::array kDetectionModes{peak, rms};

// threshold dBFS, ratio, attack ms, release ms, makeup dB, look-ahead ms, detector, automatic
// makeup
constexpr std::array<Row, 8> kRows{{
    {"Off",
     {{{0, 1, 10, 100, 0, 0, peak, false},
       {0, 1, 10, 100, 0, 0, peak, false},
       {0, 1, 10, 100, 0, 0, peak, false}}}},
    {"Gentle",
     {{{-10, 1.5F, 50, 300, 0, 0, peak, false},
       {-8, 1.5F, 40, 250, 0, 0, peak, false},
       {-10, 1.5F, 30, 200, 0, 0, peak, false}}}},
    {"Music",
     {{{-14, 2, 40, 300, 1, 0, peak, false},
       {-12, 1.8F, 30, 200, 1, 0, peak, false},
       {-14, 1.5F, 20, 150, 0, 0, peak, false}}}},
    {"Vocal",
     {{{-20, 2, 10, 150, 1, 0, peak, false},
       {-16, 3.5F, 8, 120, 3, 0, peak, false},
       {-18, 2, 5, 100, 1, 0, peak, false}}}},
    {"Podcast",
     {{{-24, 2.5F, 15, 250, 2, 0, peak, false},
       {-18, 4, 8, 150, 4, 0, peak, false},
       {-22, 2.5F, 5, 120, 2, 0, peak, false}}}},
    {"Broadcast",
     {{{-22, 4, 5, 100, 4, 0, peak, false},
       {-14, 5, 3, 80, 5, 0, peak, false},
       {-18, 3.5F, 3, 60, 3, 0, peak, false}}}},
    {"Night Mode",
     {{{-18, 3, 30, 400, 0, 5, rms, true},
       {-14, 3.5F, 20, 300, 0, 5, rms, true},
       {-20, 2.5F, 15, 250, 0, 5, rms, true}}}},
    {"Cinema",
     {{{-16, 2, 20, 300, 0, 3, peak, true},
       {-14, 3, 15, 200, 0, 3, rms, true},
       {-18, 2, 10, 200, 0, 3, peak, true}}}},
}};

using Table = std::array<NamedCompressorPreset, kRows.size()>;

/// Made on first use, so that `allPresets` is there for whatever is initialised before this file
/// is. The names below are not: what is initialised before `main` goes by the list.
const Table& table() {
    static const Table presets = [] {
        Table made;
        for (std::size_t k = 0; k < kRows.size(); ++k) {
            made[k].name = kRows[k].name;
            made[k].preset.bands.assign(kRows[k].bands.begin(), kRows[k].bands.end());
        }
        return made;
    }();
    return presets;
}

} // namespace

const CompressorPreset& CompressorPreset::off = table()[0].preset;
const CompressorPreset& CompressorPreset::gentle = table()[1].preset;
const CompressorPreset& CompressorPreset::music = table()[2].preset;
const CompressorPreset& CompressorPreset::vocal = table()[3].preset;
const CompressorPreset& CompressorPreset::podcast = table()[4].preset;
const CompressorPreset& CompressorPreset::broadcast = table()[5].preset;
const CompressorPreset& CompressorPreset::nightMode = table()[6].preset;
const CompressorPreset& CompressorPreset::cinema = table()[7].preset;

std::string_view rawValue(DetectionMode mode) noexcept {
    return mode == DetectionMode::rms ? "rms" : "peak";
}

std::optional<DetectionMode> detectionModeFrom(std::string_view rawValue) noexcept {
    return coding::fromRawValue<DetectionMode>(kDetectionModes, rawValue);
}

bool isCompressorOff(std::span<const CompressorBandSettings> bands) noexcept {
    return std::all_of(bands.begin(), bands.end(), [](const CompressorBandSettings& band) {
        return band.ratio < kSmallestCompressorRatio;
    });
}

bool CompressorPreset::isOff() const noexcept {
    return isCompressorOff(bands);
}

std::span<const NamedCompressorPreset> CompressorPreset::allPresets() {
    return table();
}

void to_json(coding::JSON& json, DetectionMode mode) {
    json = rawValue(mode);
}

void from_json(const coding::JSON& json, DetectionMode& mode) {
    mode = coding::decodedRawValue<DetectionMode>(kDetectionModes, json, "detection mode");
}

void to_json(coding::JSON& json, const CompressorBandSettings& settings) {
    json = coding::JSON::object();
    json["threshold"] = coding::encoded(settings.threshold);
    json["ratio"] = coding::encoded(settings.ratio);
    json["attackMs"] = coding::encoded(settings.attackMs);
    json["releaseMs"] = coding::encoded(settings.releaseMs);
    json["makeupGain"] = coding::encoded(settings.makeupGain);
    json["lookaheadMs"] = coding::encoded(settings.lookaheadMs);
    json["detectionMode"] = settings.detectionMode;
    json["autoMakeup"] = settings.autoMakeup;
}

void from_json(const coding::JSON& json, CompressorBandSettings& settings) {
    CompressorBandSettings read;
    read.threshold = coding::decodedFloat(coding::required(json, "threshold"));
    read.ratio = coding::decodedFloat(coding::required(json, "ratio"));
    read.attackMs = coding::decodedFloat(coding::required(json, "attackMs"));
    read.releaseMs = coding::decodedFloat(coding::required(json, "releaseMs"));
    read.makeupGain = coding::decodedFloat(coding::required(json, "makeupGain"));
    if (const auto* const lookahead = coding::optional(json, "lookaheadMs"))
        read.lookaheadMs = coding::decodedFloat(*lookahead);
    if (const auto* const mode = coding::optional(json, "detectionMode"))
        read.detectionMode = mode->get<DetectionMode>();
    if (const auto* const autoMakeup = coding::optional(json, "autoMakeup"))
        read.autoMakeup = coding::decodedBool(*autoMakeup);
    settings = read;
}

void to_json(coding::JSON& json, const CompressorPreset& preset) {
    json = coding::JSON::object();
    auto& bands = json["bands"] = coding::JSON::array();
    for (const CompressorBandSettings& band : preset.bands)
        bands.push_back(band);
}

void from_json(const coding::JSON& json, CompressorPreset& preset) {
    CompressorPreset read;
    for (const coding::JSON& band : coding::decodedArray(coding::required(json, "bands")))
        read.bands.push_back(band.get<CompressorBandSettings>());
    preset = read;
}

} // namespace orvanta
