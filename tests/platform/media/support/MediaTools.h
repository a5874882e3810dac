#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace orvanta::test {

/// Other people's readers. Each throws std::runtime_error when its program is missing or refuses
/// the file.

/// What ffprobe says of the first stream and, with "format." before the names, of the file.
std::map<std::string, std::string> probed(const std::filesystem::path& path);

/// The samples that ffmpeg decodes, interleaved, without regard to their times: priming that is
/// not skipped by a table is in it.
std::vector<float> decoded(const std::filesystem::path& path);

/// An M4A file that ffmpeg makes by itself of another file.
void encodeByFfmpeg(const std::filesystem::path& from, const std::filesystem::path& to,
                    int bitRate);

/// What soxi prints for one of its options, as "-r" for the sample rate.
std::string soxSays(const std::string& option, const std::filesystem::path& path);

} // namespace orvanta::test
