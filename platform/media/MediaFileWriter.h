#pragma once

#include "core/platform/AudioFileWriter.h"

namespace orvanta {

/// Writes audio files with libsndfile and FFmpeg's libraries, of which it silences the messages for
/// the whole program: they would go to standard error past our own log, and say in other words what
/// the reasons of `create` and `write` say.
class MediaFileWriter final : public AudioFileWriter {
public:
    MediaFileWriter();

    /// WAV: any whole rate in Hz, up to 1024 channels. AAC: the rates from 7350 to 96000 Hz that
    /// the format knows, up to 8 channels; a bit rate above what it allows at a rate is lowered.
    std::unique_ptr<AudioFile> create(const std::filesystem::path& path,
                                      const AudioFileSettings& settings,
                                      std::string& outReason) override;
};

} // namespace orvanta
