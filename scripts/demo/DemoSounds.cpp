#include "platform/embedded/cycle/WavRecorder.h"
#include "platform/embedded/sounds/MusicLike.h"
#include "platform/embedded/sounds/SpeechLike.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

namespace orvanta {
namespace {

constexpr std::uint32_t kRate = 48000;

bool writeSound(const embedded::Sound& sound, const std::string& path, std::uint32_t seconds) {
    const auto source = sound();
    const auto file = embedded::WavRecorder::open(path, source->channels(), kRate);
    if (!file) {
        std::fprintf(stderr, "cannot write %s\n", path.c_str());
        return false;
    }
    std::vector<float> second(std::size_t{kRate} * source->channels());
    for (std::uint32_t count = 0; count < seconds; ++count) {
        source->render(second, kRate);
        file->write(second);
    }
    return true;
}

int run(const std::vector<std::string>& arguments) {
    constexpr std::size_t kArgumentCount = 3;
    constexpr unsigned long kMaximumSeconds = 3600;
    const unsigned long seconds =
        arguments.size() == kArgumentCount ? std::strtoul(arguments[2].c_str(), nullptr, 10) : 0;
    if (seconds == 0 || seconds > kMaximumSeconds) {
        std::fprintf(stderr, "usage: orvanta_demo_sounds DIRECTORY SECONDS\n");
        return 2;
    }
    const auto length = static_cast<std::uint32_t>(seconds);
    const bool isWritten = writeSound(embedded::musicLike(), arguments[1] + "/music.wav", length) &&
                           writeSound(embedded::speechLike(), arguments[1] + "/speech.wav", length);
    return isWritten ? 0 : 1;
}

} // namespace
} // namespace orvanta

/// Writes music.wav and speech.wav, which nobody has a right to but us, into a directory.
int main(int argc, char** argv) {
    try {
        return orvanta::run({argv, argv + argc});
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
