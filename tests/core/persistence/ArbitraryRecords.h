#pragma once

#include "core/persistence/AudioProfile.h"

#include <rapidcheck.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <string>

namespace orvanta::test {

/// Any number that JSON can tell, each bit pattern as likely as another.
template <class Number, class Bits>
rc::Gen<Number> anyNumber() {
    static_assert(sizeof(Number) == sizeof(Bits));
    return rc::gen::map(rc::gen::arbitrary<Bits>(), [](Bits bits) {
        const auto value = std::bit_cast<Number>(bits);
        return std::isfinite(value) ? value : Number(0);
    });
}

inline rc::Gen<float> anyFloat() {
    return anyNumber<float, std::uint32_t>();
}

inline rc::Gen<double> anyDouble() {
    return anyNumber<double, std::uint64_t>();
}

/// Any text: every code point but the surrogates, NUL among them.
inline rc::Gen<std::string> anyText() {
    const auto codePoint = rc::gen::oneOf(
        rc::gen::inRange<char32_t>(0, 0x80), rc::gen::inRange<char32_t>(0x80, 0xD800),
        rc::gen::inRange<char32_t>(0xE000, 0x10000), rc::gen::inRange<char32_t>(0x10000, 0x110000));
    return rc::gen::map(rc::gen::container<std::u32string>(codePoint),
                        [](const std::u32string& points) {
                            std::string utf8;
                            const auto append = [&](char32_t bits) {
                                utf8 += static_cast<char>(bits);
                            };
                            for (const char32_t point : points) {
                                if (point < 0x80) {
                                    append(point);
                                } else if (point < 0x800) {
                                    append(0xC0 | point >> 6U);
                                    append(0x80 | (point & 0x3FU));
                                } else if (point < 0x10000) {
                                    append(0xE0 | point >> 12U);
                                    append(0x80 | (point >> 6U & 0x3FU));
                                    append(0x80 | (point & 0x3FU));
                                } else {
                                    append(0xF0 | point >> 18U);
                                    append(0x80 | (point >> 12U & 0x3FU));
                                    append(0x80 | (point >> 6U & 0x3FU));
                                    append(0x80 | (point & 0x3FU));
                                }
                            }
                            return utf8;
                        });
}

template <class Value>
Value any(const rc::Gen<Value>& gen) {
    return *gen;
}

inline bool anyBool() {
    return *rc::gen::arbitrary<bool>();
}

inline EQPreset anyEQPreset() {
    EQPreset preset;
    for (float& gain : preset.gains)
        gain = any(anyFloat());
    return preset;
}

inline CompressorPreset anyCompressorPreset() {
    CompressorPreset preset;
    preset.bands.resize(*rc::gen::inRange<std::size_t>(0, 5));
    for (CompressorBandSettings& band : preset.bands)
        band = {any(anyFloat()),
                any(anyFloat()),
                any(anyFloat()),
                any(anyFloat()),
                any(anyFloat()),
                any(anyFloat()),
                anyBool() ? DetectionMode::rms : DetectionMode::peak,
                anyBool()};
    return preset;
}

inline AppSettings anySettings() {
    AppSettings settings{.volume = any(anyFloat()),
                         .isMuted = anyBool(),
                         .isTapped = anyBool(),
                         .balance = any(anyFloat()),
                         .limiterEnabled = anyBool(),
                         .normalizationEnabled = anyBool(),
                         .stereoWidth = any(anyFloat()),
                         .crossfeedAmount = any(anyFloat())};
    if (anyBool())
        settings.outputDeviceUID = any(anyText());
    if (anyBool())
        settings.eqPreset = anyEQPreset();
    if (anyBool())
        settings.compressorPreset = anyCompressorPreset();
    return settings;
}

inline AppSettingsByKey anySettingsByKey() {
    AppSettingsByKey all;
    const auto count = *rc::gen::inRange(0, 6);
    for (int k = 0; k < count; ++k)
        all.insert_or_assign(any(anyText()), anySettings());
    return all;
}

inline AudioProfile anyProfile() {
    AudioProfile profile{.id = {},
                         .name = any(anyText()),
                         .icon = any(anyText()),
                         .createdAt = {},
                         .appSettings = anySettingsByKey(),
                         .globalSettings = {}};
    for (std::uint8_t& byte : profile.id.bytes)
        byte = *rc::gen::arbitrary<std::uint8_t>();
    profile.createdAt = Date(any(anyDouble()));
    profile.globalSettings = {
        .masterVolume = any(anyFloat()),
        .isMasterMuted = anyBool(),
        .recordingFormat = *rc::gen::element(RecordingFormat::wav, RecordingFormat::m4a),
        .recordingMode = *rc::gen::element(RecordingMode::processed, RecordingMode::original,
                                           RecordingMode::both)};
    return profile;
}

} // namespace orvanta::test
