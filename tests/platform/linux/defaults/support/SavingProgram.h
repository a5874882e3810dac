#pragma once

#include "core/persistence/AppSettings.h"
#include "core/persistence/AudioProfile.h"

/// What the program that is killed while it saves does, so that its test knows what to expect: save
/// number n stores application n % 5 with the volume n, profile n % 3 with the master volume n, and
/// the flag for taps as n % 2.
namespace orvanta::test::saving {

inline constexpr int kApplications = 5;
inline constexpr int kProfiles = 3;

inline AppSettings settings(int number) {
    return {.volume = static_cast<float>(number),
            .isMuted = false,
            .isTapped = true,
            .eqPreset = EQPreset(1, 2, 3),
            .balance = 0,
            .compressorPreset = CompressorPreset::podcast,
            .limiterEnabled = false,
            .normalizationEnabled = false,
            .stereoWidth = 1,
            .crossfeedAmount = 0};
}

inline std::string application(int number) {
    return "com.example.app" + std::to_string(number % kApplications);
}

inline AudioProfile profile(int number) {
    AudioProfile profile{.id = {},
                         .name = "Profile",
                         .icon = "slider.horizontal.3",
                         .createdAt = Date(number),
                         .appSettings = {{application(number), settings(number)}},
                         .globalSettings = {.masterVolume = static_cast<float>(number),
                                            .isMasterMuted = false,
                                            .recordingFormat = RecordingFormat::wav,
                                            .recordingMode = RecordingMode::processed}};
    profile.id.bytes[0] = static_cast<std::uint8_t>(number % kProfiles);
    return profile;
}

} // namespace orvanta::test::saving
