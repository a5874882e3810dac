#include "platform/media/MediaFileWriter.h"

#include "platform/media/M4AFile.h"
#include "platform/media/WAVFile.h"

extern "C" {
#include <libavutil/log.h>
}

namespace orvanta {

MediaFileWriter::MediaFileWriter() {
    av_log_set_level(AV_LOG_QUIET);
}

std::unique_ptr<AudioFile> MediaFileWriter::create(const std::filesystem::path& path,
                                                   const AudioFileSettings& settings,
                                                   std::string& outReason) {
    switch (settings.coding) {
    case AudioFileSettings::Coding::floatWAV:
        return media::WAVFile::create(path, settings, outReason);
    case AudioFileSettings::Coding::aacMPEG4:
        return media::M4AFile::create(path, settings, outReason);
    }
    outReason = "Unknown coding";
    return nullptr;
}

} // namespace orvanta
