#include "platform/embedded/cycle/WavRecorder.h"

#include <sndfile.h>

#include <cmath>

namespace orvanta::embedded {

struct WavRecorder::File {
    explicit File(SNDFILE* opened) : handle(opened) {}

    File(const File&) = delete;
    File& operator=(const File&) = delete;

    ~File() { sf_close(handle); }

    SNDFILE* handle;
};

std::shared_ptr<WavRecorder> WavRecorder::open(const std::string& path, std::uint32_t channels,
                                               double sampleRate) {
    SF_INFO info{};
    info.channels = static_cast<int>(channels);
    info.samplerate = static_cast<int>(std::lround(sampleRate));
    info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    SNDFILE* handle = sf_open(path.c_str(), SFM_WRITE, &info);
    if (handle == nullptr)
        return nullptr;
    return std::shared_ptr<WavRecorder>(new WavRecorder(std::make_unique<File>(handle)));
}

WavRecorder::WavRecorder(std::unique_ptr<File> file) : file_(std::move(file)) {}

WavRecorder::~WavRecorder() = default;

void WavRecorder::close() {
    file_.reset();
}

void WavRecorder::write(std::span<const float> interleaved) {
    if (!file_)
        return;
    sf_write_float(file_->handle, interleaved.data(), static_cast<sf_count_t>(interleaved.size()));
}

} // namespace orvanta::embedded
