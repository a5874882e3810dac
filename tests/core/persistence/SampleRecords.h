#pragma once

#include "core/persistence/AudioProfile.h"

#include <array>
#include <cstdint>

namespace orvanta::test {

/// What an application has that nothing but its volume was set for.
inline AppSettings plainSettings(float volume = 1) {
    return {.volume = volume,
            .isMuted = false,
            .isTapped = true,
            .balance = 0,
            .limiterEnabled = false,
            .normalizationEnabled = false,
            .stereoWidth = 1,
            .crossfeedAmount = 0};
}

/// Everything set, with fractions that no float holds exactly.
inline AppSettings fullSettings() {
    return {.volume = 1.35F,
            .isMuted = true,
            .outputDeviceUID = "alsa_output.usb-Grüße_\"Hi-Fi\"",
            .isTapped = false,
            .eqPreset =
                EQPreset(std::array{4.0F, 3.0F, 2.0F, 0.0F, -1.0F, 1.5F, 2.0F, 4.0F, -12.0F, 0.1F}),
            .balance = -0.25F,
            .compressorPreset = CompressorPreset{{
                {-18, 3, 30, 400, 0, 5, DetectionMode::rms, true},
                {-14.5F, 3.5F, 20, 300, 0, 0, DetectionMode::peak, false},
            }},
            .limiterEnabled = true,
            .normalizationEnabled = true,
            .stereoWidth = 1.1F,
            .crossfeedAmount = 0.3F};
}

inline GlobalSettings plainGlobalSettings() {
    return {.masterVolume = 0.8F,
            .isMasterMuted = false,
            .recordingFormat = RecordingFormat::wav,
            .recordingMode = RecordingMode::processed};
}

/// `number` tells profiles apart.
inline AudioProfile plainProfile(int number = 0) {
    const UUID id{{0x1f, 0x2e, 0x3d, 0x4c, 0x5b, 0x6a, 0x79, 0x88, 0x97, 0xa6, 0xb5, 0xc4, 0xd3,
                   0xe2, 0xf1, static_cast<std::uint8_t>(number)}};
    return {.id = id,
            .name = "Evening",
            .icon = "slider.horizontal.3",
            .createdAt = Date(817458896.5),
            .appSettings = {},
            .globalSettings = plainGlobalSettings()};
}

inline AudioProfile fullProfile() {
    AudioProfile profile = plainProfile(0xff);
    profile.name = "Späte „Nacht“ \U0001F319\n2";
    profile.createdAt = Date(817458896);
    profile.appSettings.emplace("org.videolan.VLC", fullSettings());
    profile.globalSettings = {.masterVolume = 1,
                              .isMasterMuted = true,
                              .recordingFormat = RecordingFormat::m4a,
                              .recordingMode = RecordingMode::both};
    return profile;
}

} // namespace orvanta::test
