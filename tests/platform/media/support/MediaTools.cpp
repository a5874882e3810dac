#include "tests/platform/media/support/MediaTools.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

#include <fstream>
#include <sstream>

namespace orvanta::test {
namespace {

constexpr Seconds kPatience{120};

} // namespace

std::map<std::string, std::string> probed(const std::filesystem::path& path) {
    const std::string entries = "stream=codec_name,sample_fmt,sample_rate,channels,start_pts,"
                                "duration_ts,nb_frames:format=format_name,start_time,duration";
    const std::string output =
        runToEnd({"ffprobe", "-v", "error", "-select_streams", "0", "-show_entries", entries, "-of",
                  "flat=s=.", path.string()},
                 kPatience);
    std::map<std::string, std::string> words;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t equals = line.find('=');
        std::string name = line.substr(0, equals);
        std::string value = line.substr(equals + 1);
        if (const std::string stream = "streams.stream.0."; name.starts_with(stream))
            name.erase(0, stream.size());
        std::erase(value, '"');
        words[name] = value;
    }
    return words;
}

std::vector<float> decoded(const std::filesystem::path& path) {
    const TemporaryDirectory folder;
    const std::filesystem::path raw = folder.path() / "raw";
    runToEnd(
        {"ffmpeg", "-v", "error", "-nostdin", "-i", path.string(), "-f", "f32le", raw.string()},
        kPatience);
    std::vector<float> samples(std::filesystem::file_size(raw) / sizeof(float));
    std::ifstream(raw, std::ios::binary)
        .read(reinterpret_cast<char*>(samples.data()),
              static_cast<std::streamsize>(samples.size() * sizeof(float)));
    return samples;
}

void encodeByFfmpeg(const std::filesystem::path& from, const std::filesystem::path& to,
                    int bitRate) {
    runToEnd({"ffmpeg", "-v", "error", "-nostdin", "-i", from.string(), "-c:a", "aac", "-b:a",
              std::to_string(bitRate), to.string()},
             kPatience);
}

std::string soxSays(const std::string& option, const std::filesystem::path& path) {
    std::string words = runToEnd({"soxi", option, path.string()});
    while (!words.empty() && words.back() == '\n')
        words.pop_back();
    return words;
}

} // namespace orvanta::test
