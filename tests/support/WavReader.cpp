#include "tests/support/WavReader.h"

#include <bit>
#include <stdexcept>
#include <string>

namespace orvanta::test {
namespace {

/// What a size field of an RF64 file holds when its size stands in the chunk "ds64".
constexpr std::uint64_t kSeeDs64 = 0xFFFFFFFF;

void check(bool isSo, const std::string& what) {
    if (!isSo)
        throw std::runtime_error("not a sound WAV file: " + what);
}

} // namespace

WavReader::WavReader(const std::filesystem::path& path) : file_(path, std::ios::binary) {
    check(file_.is_open(), "no file " + path.string());
    const std::string form = letters();
    isRF64_ = form == "RF64";
    check(isRF64_ || form == "RIFF", "begins with " + form);
    fileBytes_ = number(4) + 8;
    check(letters() == "WAVE", "no WAVE");
    while (!hasData_) {
        const std::string type = letters();
        const std::uint64_t size = number(4);
        const auto start = static_cast<std::uint64_t>(file_.tellg());
        readChunk(type, size);
        if (!hasData_)
            file_.seekg(static_cast<std::streamoff>(start + size + size % 2));
    }
}

void WavReader::readChunk(const std::string& type, std::uint64_t size) {
    if (type == "ds64") {
        check(isRF64_ && fileBytes_ == kSeeDs64 + 8, "ds64 beside a size");
        fileBytes_ = number(8) + 8;
        dataBytes_ = number(8);
    } else if (type == "fmt ") {
        readFormat(size);
    } else if (type == "data") {
        check(bytesPerFrame_ > 0, "data before its format");
        check(isRF64_ == (size == kSeeDs64), "a size in the wrong place");
        if (!isRF64_)
            dataBytes_ = size;
        dataOffset_ = static_cast<std::uint64_t>(file_.tellg());
        hasData_ = true;
    }
}

void WavReader::readFormat(std::uint64_t size) {
    constexpr unsigned kExtensible = 0xFFFE;
    formatTag_ = static_cast<unsigned>(number(2));
    channels_ = static_cast<std::uint32_t>(number(2));
    sampleRate_ = static_cast<std::uint32_t>(number(4));
    const std::uint64_t bytesPerSecond = number(4);
    bytesPerFrame_ = static_cast<std::uint32_t>(number(2));
    bitsPerSample_ = static_cast<unsigned>(number(2));
    check(bytesPerFrame_ == channels_ * bitsPerSample_ / 8, "frames of an odd size");
    check(bytesPerSecond == std::uint64_t{bytesPerFrame_} * sampleRate_, "an odd byte rate");
    if (formatTag_ != kExtensible)
        return;
    check(size >= 40 && number(2) >= 22, "a short extension");
    check(number(2) == bitsPerSample_, "unused bits");
    // The speakers' places; then comes a format tag that twelve fixed bytes follow.
    static_cast<void>(number(4));
    formatTag_ = static_cast<unsigned>(number(4));
}

std::vector<float> WavReader::samples(std::uint64_t firstFrame, std::uint64_t frames) {
    check(isFloat() && bitsPerSample_ == 32, "no 32-bit float samples");
    check(firstFrame + frames <= this->frames(), "fewer frames than asked for");
    std::vector<float> result(frames * channels_);
    std::vector<char> bytes(result.size() * 4);
    file_.seekg(static_cast<std::streamoff>(dataOffset_ + firstFrame * bytesPerFrame_));
    check(!file_.read(bytes.data(), static_cast<std::streamsize>(bytes.size())).fail(),
          "fewer samples than its header tells");
    for (std::size_t index = 0; index < result.size(); ++index) {
        std::uint32_t bits = 0;
        for (std::size_t byte = 4; byte > 0; --byte)
            bits = bits << 8U | static_cast<unsigned char>(bytes[4 * index + byte - 1]);
        result[index] = std::bit_cast<float>(bits);
    }
    return result;
}

std::uint64_t WavReader::number(unsigned bytes) {
    std::uint64_t value = 0;
    for (unsigned index = 0; index < bytes; ++index) {
        const int byte = file_.get();
        check(byte >= 0, "ends within its header");
        value |= std::uint64_t(static_cast<unsigned>(byte)) << (8 * index);
    }
    return value;
}

std::string WavReader::letters() {
    std::string text(4, ' ');
    check(!file_.read(text.data(), 4).fail(), "ends within its header");
    return text;
}

} // namespace orvanta::test
