#pragma once

#include "core/dsp/EQBand.h"
#include "core/persistence/coding/JSONCoding.h"

#include <array>
#include <optional>
#include <span>
#include <string_view>

namespace orvanta {

struct NamedEQPreset;

/// What a user has set an equaliser to: ten gains and nothing else. Frequencies, Q and shapes
/// belong to the processor and are the same for everybody.
struct EQPreset {
    /// dB, in the order of `kEQFrequencies`.
    std::array<float, kEQBandCount> gains{};

    /// Flat.
    constexpr EQPreset() noexcept = default;

    /// The first ten of `given`; bands that it does not reach are flat.
    explicit constexpr EQPreset(std::span<const float> given) noexcept {
        for (std::size_t band = 0; band < gains.size() && band < given.size(); ++band)
            gains[band] = given[band];
    }

    /// What three knobs set: their own bands, and no others.
    constexpr EQPreset(float bassGain, float midGain, float trebleGain) noexcept {
        setBassGain(bassGain);
        setMidGain(midGain);
        setTrebleGain(trebleGain);
    }

    [[nodiscard]] constexpr float bassGain() const noexcept { return gains[kBass]; }

    [[nodiscard]] constexpr float midGain() const noexcept { return gains[kMid]; }

    [[nodiscard]] constexpr float trebleGain() const noexcept { return gains[kTreble]; }

    constexpr void setBassGain(float gain) noexcept { gains[kBass] = gain; }

    constexpr void setMidGain(float gain) noexcept { gains[kMid] = gain; }

    constexpr void setTrebleGain(float gain) noexcept { gains[kTreble] = gain; }

    /// Whether every gain is closer to 0 than 0.05 dB. (For the processor a gain of exactly 0.05 is
    /// flat still.)
    [[nodiscard]] bool isFlat() const noexcept;

    /// The first of `allNamedPresets` with exactly these gains.
    [[nodiscard]] std::optional<std::string_view> matchedPresetName() const noexcept;

    /// In the order in which they are offered.
    [[nodiscard]] static std::span<const NamedEQPreset> allNamedPresets() noexcept;

    static const EQPreset rock;
    static const EQPreset pop;
    static const EQPreset jazz;
    static const EQPreset classical;
    static const EQPreset electronic;
    static const EQPreset hipHop;
    static const EQPreset rnb;
    static const EQPreset lateNight;
    static const EQPreset smallSpeakers;
    static const EQPreset headphones;
    static const EQPreset podcast;
    static const EQPreset bassBoost;

    friend constexpr bool operator==(const EQPreset&, const EQPreset&) = default;

private:
    static constexpr auto kBass = static_cast<std::size_t>(EQSimpleBand::bass);
    static constexpr auto kMid = static_cast<std::size_t>(EQSimpleBand::mid);
    static constexpr auto kTreble = static_cast<std::size_t>(EQSimpleBand::treble);
};

struct NamedEQPreset {
    std::string_view name;
    std::string_view icon; ///< an emoji
    EQPreset preset;
};

/// Written as {"gains": [ten numbers]}. Read from any number of gains, and from the older form with
/// up to three knobs ("bassGain", "midGain", "trebleGain") where "gains" cannot be read;
/// `from_json` throws a `CodingError` when a knob is no number.
void to_json(coding::JSON& json, const EQPreset& preset);
void from_json(const coding::JSON& json, EQPreset& preset);

} // namespace orvanta
