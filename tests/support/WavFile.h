#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace orvanta::test {

/// Writes channels of equal length, in the range of -1 to 1, as a 16-bit PCM file.
/// Throws std::runtime_error when the file cannot be written.
void writeWavFile(const std::filesystem::path& path, std::uint32_t sampleRate,
                  std::span<const std::vector<float>> channels);

} // namespace orvanta::test
