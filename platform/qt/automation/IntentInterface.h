#pragma once

#include <QLatin1String>

/// Where a program's intents stand on the session bus, and what they are called there.
namespace orvanta::intents {

inline constexpr QLatin1String kPath("/com/meridane/orvanta");
inline constexpr QLatin1String kInterface("com.meridane.orvanta.Intents");

inline constexpr QLatin1String kSetVolume("SetVolume");
inline constexpr QLatin1String kToggleMute("ToggleMute");
inline constexpr QLatin1String kListAudioApps("ListAudioApps");
inline constexpr QLatin1String kListShortcuts("ListShortcuts");

/// The signature of a volume: a signed whole number of 64 bits.
inline constexpr QLatin1String kVolumeSignature("x");

} // namespace orvanta::intents
