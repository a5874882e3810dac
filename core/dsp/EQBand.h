#pragma once

#include "core/persistence/coding/JSONCoding.h"

#include <array>
#include <optional>
#include <string_view>

namespace orvanta {

inline constexpr int kEQBandCount = 10;

/// Hz, lowest band first.
inline constexpr std::array<float, kEQBandCount> kEQFrequencies{31,   62,   125,  250,  500,
                                                                1000, 2000, 4000, 8000, 16000};

/// What a control of each band is called.
inline constexpr std::array<std::string_view, kEQBandCount> kEQLabels{
    "31", "62", "125", "250", "500", "1K", "2K", "4K", "8K", "16K"};

/// Shape of a band. The numbers are what is stored.
enum class EQBandType : int { lowShelf = 0, peaking = 1, highShelf = 2 };

inline constexpr std::array kEQBandTypes{EQBandType::lowShelf, EQBandType::peaking,
                                         EQBandType::highShelf};

/// The type with that number, if there is one.
[[nodiscard]] std::optional<EQBandType> eqBandType(int rawValue) noexcept;

/// The bands of the simple view with three knobs; the number of each is its place among the ten.
enum class EQSimpleBand : int { bass = 3, mid = 5, treble = 7 };

inline constexpr std::array kEQSimpleBands{EQSimpleBand::bass, EQSimpleBand::mid,
                                           EQSimpleBand::treble};

/// The simple band with that number, if there is one.
[[nodiscard]] std::optional<EQSimpleBand> eqSimpleBand(int rawValue) noexcept;

/// The parameters of one second-order filter.
struct EQBand {
    float gain = 0;      ///< dB
    float frequency = 0; ///< Hz: the centre of a peak, the corner of a shelf
    float q = 0;
    EQBandType type = EQBandType::peaking;

    /// Whether the gain is worth filtering for: beyond 0.05 dB up or down.
    [[nodiscard]] bool isActive() const noexcept;

    friend bool operator==(const EQBand&, const EQBand&) = default;
};

/// All four keys are there in what is written and must be there in what is read; `from_json` throws
/// a `CodingError` otherwise.
void to_json(coding::JSON& json, EQBandType type);
void from_json(const coding::JSON& json, EQBandType& type);
void to_json(coding::JSON& json, const EQBand& band);
void from_json(const coding::JSON& json, EQBand& band);

} // namespace orvanta
