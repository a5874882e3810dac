#pragma once

#include <spa/param/audio/format-utils.h>

namespace orvanta::test {

/// What a stream or a device of the tests carries: samples, or what a receiver decodes.
enum class SoundFormat { raw, encoded };

/// As the server wants to be told of it; lives in the builder's memory.
inline const spa_pod* buildSoundFormat(spa_pod_builder& builder, SoundFormat format) {
    if (format == SoundFormat::encoded) {
        spa_audio_info_iec958 encoded{};
        encoded.codec = SPA_AUDIO_IEC958_CODEC_AC3;
        encoded.rate = 48000;
        return spa_format_audio_iec958_build(&builder, SPA_PARAM_EnumFormat, &encoded);
    }
    spa_audio_info_raw raw{};
    raw.format = SPA_AUDIO_FORMAT_F32;
    raw.rate = 48000;
    raw.channels = 2;
    raw.position[0] = SPA_AUDIO_CHANNEL_FL;
    raw.position[1] = SPA_AUDIO_CHANNEL_FR;
    return spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &raw);
}

} // namespace orvanta::test
