#include "core/dsp/EQBand.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>

namespace orvanta {
namespace {

constexpr float kSmallestActiveGain = 0.05F; // dB

constexpr const char* kGainKey = "gain";
constexpr const char* kFrequencyKey = "frequency";
constexpr const char* kQKey = "q";
constexpr const char* kTypeKey = "type";

template <class Enumeration, std::size_t count>
std::optional<Enumeration> caseOf(const std::array<Enumeration, count>& cases, int rawValue) {
    const auto* const found = std::find(cases.begin(), cases.end(), Enumeration{rawValue});
    return found == cases.end() ? std::nullopt : std::optional(*found);
}

} // namespace

std::optional<EQBandType> eqBandType(int rawValue) noexcept {
    return caseOf(kEQBandTypes, rawValue);
}

std::optional<EQSimpleBand> eqSimpleBand(int rawValue) noexcept {
    return caseOf(kEQSimpleBands, rawValue);
}

bool EQBand::isActive() const noexcept {
    return std::fabs(gain) > kSmallestActiveGain;
}

void to_json(coding::JSON& json, EQBandType type) {
    json = static_cast<int>(type);
}

void from_json(const coding::JSON& json, EQBandType& type) {
    const auto known = eqBandType(coding::decodedInt(json));
    if (!known)
        throw coding::CodingError("no band type has the number " + json.dump());
    type = *known;
}

void to_json(coding::JSON& json, const EQBand& band) {
    json = coding::JSON::object();
    json[kGainKey] = coding::encoded(band.gain);
    json[kFrequencyKey] = coding::encoded(band.frequency);
    json[kQKey] = coding::encoded(band.q);
    json[kTypeKey] = band.type;
}

void from_json(const coding::JSON& json, EQBand& band) {
    band = {coding::decodedFloat(coding::required(json, kGainKey)),
            coding::decodedFloat(coding::required(json, kFrequencyKey)),
            coding::decodedFloat(coding::required(json, kQKey)),
            coding::required(json, kTypeKey).get<EQBandType>()};
}

} // namespace orvanta
