#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <vector>

namespace orvanta::test {

/// Reads RIFF and RF64 WAV files by itself, so that what a library writes is checked by something
/// that shares nothing with it. Throws std::runtime_error at what contradicts the format.
class WavReader {
public:
    explicit WavReader(const std::filesystem::path& path);

    /// Whether sizes take 64 bits; then the file begins with "RF64".
    [[nodiscard]] bool isRF64() const { return isRF64_; }

    [[nodiscard]] bool isFloat() const { return formatTag_ == 3; }

    [[nodiscard]] unsigned bitsPerSample() const { return bitsPerSample_; }

    [[nodiscard]] std::uint32_t sampleRate() const { return sampleRate_; }

    [[nodiscard]] std::uint32_t channels() const { return channels_; }

    /// As the header tells.
    [[nodiscard]] std::uint64_t frames() const { return dataBytes_ / bytesPerFrame_; }

    /// The length of the whole file as the header tells.
    [[nodiscard]] std::uint64_t fileBytes() const { return fileBytes_; }

    /// Where the samples begin.
    [[nodiscard]] std::uint64_t dataOffset() const { return dataOffset_; }

    /// 32-bit float samples, interleaved.
    [[nodiscard]] std::vector<float> samples(std::uint64_t firstFrame, std::uint64_t frames);

    [[nodiscard]] std::vector<float> samples() { return samples(0, frames()); }

private:
    [[nodiscard]] std::uint64_t number(unsigned bytes);
    [[nodiscard]] std::string letters();
    void readChunk(const std::string& type, std::uint64_t size);
    void readFormat(std::uint64_t size);

    std::ifstream file_;
    bool isRF64_ = false;
    bool hasData_ = false;
    unsigned formatTag_ = 0;
    unsigned bitsPerSample_ = 0;
    std::uint32_t sampleRate_ = 0;
    std::uint32_t channels_ = 0;
    std::uint32_t bytesPerFrame_ = 0;
    std::uint64_t fileBytes_ = 0;
    std::uint64_t dataBytes_ = 0;
    std::uint64_t dataOffset_ = 0;
};

} // namespace orvanta::test
