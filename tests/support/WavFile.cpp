#include "tests/support/WavFile.h"

#include <cmath>
#include <fstream>
#include <stdexcept>
#include <string>

namespace orvanta::test {

namespace {

void appendNumber(std::string& bytes, std::uint32_t value, int count) {
    for (int index = 0; index < count; ++index)
        bytes.push_back(static_cast<char>((value >> (8 * index)) & 0xffU));
}

std::string header(std::uint32_t sampleRate, std::uint32_t channelCount, std::uint32_t dataBytes) {
    const std::uint32_t bytesPerFrame = channelCount * 2;
    std::string bytes = "RIFF";
    appendNumber(bytes, 36 + dataBytes, 4);
    bytes += "WAVEfmt ";
    appendNumber(bytes, 16, 4);
    appendNumber(bytes, 1, 2);
    appendNumber(bytes, channelCount, 2);
    appendNumber(bytes, sampleRate, 4);
    appendNumber(bytes, sampleRate * bytesPerFrame, 4);
    appendNumber(bytes, bytesPerFrame, 2);
    appendNumber(bytes, 16, 2);
    bytes += "data";
    appendNumber(bytes, dataBytes, 4);
    return bytes;
}

} // namespace

void writeWavFile(const std::filesystem::path& path, std::uint32_t sampleRate,
                  std::span<const std::vector<float>> channels) {
    const std::size_t frames = channels.front().size();
    std::string bytes = header(sampleRate, static_cast<std::uint32_t>(channels.size()),
                               static_cast<std::uint32_t>(frames * channels.size() * 2));
    for (std::size_t frame = 0; frame < frames; ++frame)
        for (const std::vector<float>& channel : channels) {
            const long value = std::lround(channel[frame] * 32768.0F);
            appendNumber(bytes, static_cast<std::uint32_t>(value), 2);
        }
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush())
        throw std::runtime_error("cannot write " + path.string());
}

} // namespace orvanta::test
