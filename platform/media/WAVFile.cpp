#include "platform/media/WAVFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>

namespace orvanta::media {
namespace {

/// Frames that a kill may keep from the header. What of a write finds no space loses the rest of it
/// too: nothing out of order follows.
constexpr std::size_t kBlockFrames = 4096;

/// The header holds whole numbers of Hz. 0 stands for a rate that it cannot hold.
int wholeRate(double rate) {
    const bool fits = rate >= 1 && rate <= std::numeric_limits<int>::max();
    return fits && rate == std::floor(rate) ? static_cast<int>(rate) : 0;
}

SF_INFO infoFor(const AudioFileSettings& settings) {
    SF_INFO info{};
    info.samplerate = wholeRate(settings.sampleRate);
    info.channels = settings.channels;
    // An RF64 file that is allowed to be a RIFF file for as long as it is small enough.
    info.format = SF_FORMAT_RF64 | SF_FORMAT_FLOAT;
    return info;
}

} // namespace

SF_VIRTUAL_IO WAVFile::Storage::calls() {
    SF_VIRTUAL_IO calls{};
    calls.get_filelen = [](void* self) -> sf_count_t {
        return static_cast<Storage*>(self)->file->size();
    };
    calls.seek = [](sf_count_t offset, int whence, void* self) -> sf_count_t {
        auto& storage = *static_cast<Storage*>(self);
        if (whence == SEEK_CUR)
            offset += storage.position;
        else if (whence == SEEK_END)
            offset += storage.file->size();
        return storage.position = std::clamp<sf_count_t>(offset, 0, storage.file->size());
    };
    calls.read = [](void*, sf_count_t, void*) -> sf_count_t {
        return 0;
    };
    calls.write = [](const void* data, sf_count_t size, void* self) -> sf_count_t {
        auto& storage = *static_cast<Storage*>(self);
        const ByteView bytes(static_cast<const std::byte*>(data), static_cast<std::size_t>(size));
        if (auto reason = storage.file->write(storage.position, bytes)) {
            storage.failure = std::move(reason);
            return 0;
        }
        storage.position += size;
        return size;
    };
    calls.tell = [](void* self) -> sf_count_t {
        return static_cast<Storage*>(self)->position;
    };
    return calls;
}

std::unique_ptr<WAVFile> WAVFile::create(const std::filesystem::path& path,
                                         const AudioFileSettings& settings,
                                         std::string& outReason) {
    const SF_INFO info = infoFor(settings);
    if (info.samplerate == 0 || sf_format_check(&info) == 0) {
        outReason = fmt::format("A WAV file cannot hold {} channels at {} Hz", settings.channels,
                                settings.sampleRate);
        return nullptr;
    }
    auto file = NewFile::create(path, outReason);
    if (!file)
        return nullptr;
    std::unique_ptr<WAVFile> wav(new WAVFile(std::move(file)));
    if (wav->begin(info, outReason))
        return wav;
    wav->storage_.file->remove();
    return nullptr;
}

WAVFile::WAVFile(std::unique_ptr<NewFile> file)
    : storage_{std::move(file), 0, std::nullopt}, sound_(nullptr, &sf_close) {}

WAVFile::~WAVFile() = default;

bool WAVFile::begin(SF_INFO info, std::string& outReason) {
    SF_VIRTUAL_IO calls = Storage::calls();
    sound_.reset(sf_open_virtual(&calls, SFM_WRITE, &info, &storage_));
    if (sound_) {
        sf_command(sound_.get(), SFC_RF64_AUTO_DOWNGRADE, nullptr, SF_TRUE);
        // The first one counts the file as it is before it, which is shorter by the header.
        sf_command(sound_.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
        sf_command(sound_.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
        // From here on each block's header follows it, and counts what the file holds of it.
        sf_command(sound_.get(), SFC_SET_UPDATE_HEADER_AUTO, nullptr, SF_TRUE);
        if (!storage_.failure)
            return true;
    }
    outReason = storage_.failure.value_or(sf_strerror(sound_.get()));
    return false;
}

std::optional<std::string> WAVFile::write(std::span<const float* const> channels,
                                          std::size_t frames) {
    storage_.failure.reset();
    for (std::size_t done = 0; done < frames; done += kBlockFrames)
        if (!writeBlock(channels, done, std::min(kBlockFrames, frames - done)))
            break;
    return std::exchange(storage_.failure, std::nullopt);
}

std::optional<std::string> WAVFile::finish() {
    // The header is true already; closing writes it once more.
    storage_.failure.reset();
    sound_.reset();
    return std::exchange(storage_.failure, std::nullopt);
}

bool WAVFile::writeBlock(std::span<const float* const> channels, std::size_t first,
                         std::size_t frames) {
    interleaved_.resize(frames * channels.size());
    for (std::size_t channel = 0; channel < channels.size(); ++channel)
        for (std::size_t frame = 0; frame < frames; ++frame)
            interleaved_[frame * channels.size() + channel] = channels[channel][first + frame];
    const auto count = static_cast<sf_count_t>(frames);
    return sf_writef_float(sound_.get(), interleaved_.data(), count) == count;
}

} // namespace orvanta::media
