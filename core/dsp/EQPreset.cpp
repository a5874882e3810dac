#include "core/dsp/EQPreset.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace orvanta {
namespace {

constexpr float kFlatBelow = 0.05F; // dB

constexpr const char* kGainsKey = "gains";
constexpr const char* kBassGainKey = "bassGain";
constexpr const char* kMidGainKey = "midGain";
constexpr const char* kTrebleGainKey = "trebleGain";

constexpr EQPreset of(const std::array<float, kEQBandCount>& gains) {
    return EQPreset(gains);
}

EQPreset decodedFromGains(const coding::JSON& json) {
    std::vector<float> gains;
    for (const coding::JSON& gain : coding::decodedArray(coding::required(json, kGainsKey)))
        gains.push_back(coding::decodedFloat(gain));
    return EQPreset(gains);
}

EQPreset decodedFromKnobs(const coding::JSON& json) {
    const auto gainOf = [&](const char* key) {
        const coding::JSON* const gain = coding::optional(json, key);
        return gain != nullptr ? coding::decodedFloat(*gain) : 0.0F;
    };
    return {gainOf(kBassGainKey), gainOf(kMidGainKey), gainOf(kTrebleGainKey)};
}

} // namespace

// clang-format off
// dB at                                                31  62 125 250 500  1K  2K  4K  8K 16K
constinit const EQPreset EQPreset::rock          = of({  4,  3,  2,  0, -1,  1,  2,  4,  3,  2});
constinit const EQPreset EQPreset::pop           = of({ -1,  0,  2,  3,  4,  3,  2,  1,  0, -1});
constinit const EQPreset EQPreset::jazz          = of({  3,  2,  0,  1, -1, -1,  0,  1,  2,  3});
constinit const EQPreset EQPreset::classical     = of({  3,  2,  0,  0,  0,  0,  0,  0,  2,  3});
constinit const EQPreset EQPreset::electronic    = of({  5,  4,  2,  0, -2,  0,  1,  3,  4,  4});
constinit const EQPreset EQPreset::hipHop        = of({  5,  5,  4,  2,  0, -1, -1,  1,  2,  1});
constinit const EQPreset EQPreset::rnb           = of({  4,  4,  3,  1, -1,  0,  1,  2,  2,  1});
constinit const EQPreset EQPreset::lateNight     = of({ -6, -4, -2,  0,  1,  2,  2,  1,  0, -1});
constinit const EQPreset EQPreset::smallSpeakers = of({  5,  4,  3,  1,  0,  0,  0,  1,  2,  2});
constinit const EQPreset EQPreset::headphones    = of({  2,  1,  0, -1, -1,  0,  1,  2,  2,  3});
constinit const EQPreset EQPreset::podcast       = of({ -4, -3, -2,  0,  2,  4,  4,  3,  1, -2});
constinit const EQPreset EQPreset::bassBoost     = of({  6,  5,  4,  2,  0,  0,  0,  0,  0,  0});

// clang-format on

std::span<const NamedEQPreset> EQPreset::allNamedPresets() noexcept {
    static const std::array<NamedEQPreset, 12> all{{
        {"Rock", "\U0001F3B8", rock},
        {"Pop", "\U0001F3A4", pop},
        {"Jazz", "\U0001F3B7", jazz},
        {"Classical", "\U0001F3BB", classical},
        {"Electronic", "\U0001F3B9", electronic},
        {"Hip-Hop", "\U0001F3A7", hipHop},
        {"R&B", "\U0001F3B5", rnb},
        {"Late Night", "\U0001F319", lateNight},
        {"Small Speakers", "\U0001F508", smallSpeakers},
        {"Headphones", "\U0001F3A7", headphones},
        {"Podcast", "\U0001F399\uFE0F", podcast},
        {"Bass Boost", "\U0001F4A5", bassBoost},
    }};
    return all;
}

bool EQPreset::isFlat() const noexcept {
    return std::all_of(gains.begin(), gains.end(),
                       [](float gain) { return std::fabs(gain) < kFlatBelow; });
}

std::optional<std::string_view> EQPreset::matchedPresetName() const noexcept {
    for (const NamedEQPreset& named : allNamedPresets())
        if (named.preset == *this)
            return named.name;
    return std::nullopt;
}

void to_json(coding::JSON& json, const EQPreset& preset) {
    coding::JSON gains = coding::JSON::array();
    for (const float gain : preset.gains)
        gains.push_back(coding::encoded(gain));
    json = coding::JSON::object();
    json[kGainsKey] = std::move(gains);
}

void from_json(const coding::JSON& json, EQPreset& preset) {
    try {
        preset = decodedFromGains(json);
    } catch (const coding::CodingError&) {
        // Whatever is wrong with the gains, the older form decides: what an old version stored
        // must come back, and what is neither is flat.
        preset = decodedFromKnobs(json);
    }
}

} // namespace orvanta
