// Records the wandering tones, as fast as it can, until it is killed:
// CODING FILE COUNTER FRAMES, where CODING is "wav" or "m4a" and the counter tells how many frames
// have been handed over. After the last frame it finishes the file and waits for its end.

#include "platform/media/MediaFileWriter.h"
#include "tests/platform/media/support/Material.h"
#include "tests/platform/media/support/SharedCounter.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <unistd.h>
#include <utility>
#include <vector>

namespace orvanta::test {
namespace {

constexpr double kSampleRate = 48000;
constexpr std::uint64_t kBlockFrames = 4800;
/// Nobody leaves a recorder unkilled for longer.
constexpr unsigned kSecondsToLive = 120;

/// The same sound, computed beforehand: the recorder shall spend its time writing.
Material prepared(const Material& material, std::uint64_t frames) {
    std::vector<float> samples;
    for (std::uint64_t frame = 0; frame < frames; ++frame)
        for (std::uint32_t channel = 0; channel < 2; ++channel)
            samples.push_back(material(channel, frame));
    return [samples = std::move(samples)](std::uint32_t channel, std::uint64_t frame) {
        return samples[2 * frame + channel];
    };
}

int record(const std::string& coding, const std::filesystem::path& path, SharedCounter& counter,
           std::uint64_t frames) {
    const auto kind =
        coding == "wav" ? AudioFileSettings::Coding::floatWAV : AudioFileSettings::Coding::aacMPEG4;
    std::string reason;
    const auto file = MediaFileWriter().create(path, {kind, kSampleRate, 2, 256000}, reason);
    if (!file) {
        std::cerr << reason << '\n';
        return 1;
    }
    const Material material = prepared(wanderingTones(kSampleRate), frames);
    for (std::uint64_t done = 0; done < frames; done += kBlockFrames) {
        if (auto failure = writeMaterial(*file, material, 2, done, kBlockFrames)) {
            std::cerr << *failure << '\n';
            return 1;
        }
        counter.set(done + kBlockFrames);
    }
    file->finish();
    for (;;)
        pause();
}

} // namespace
} // namespace orvanta::test

int main(int argc, char** argv) {
    if (argc != 5)
        return 2;
    alarm(orvanta::test::kSecondsToLive);
    try {
        orvanta::test::SharedCounter counter(argv[3]);
        const std::uint64_t frames = std::strtoull(argv[4], nullptr, 10);
        return orvanta::test::record(argv[1], argv[2], counter, frames);
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}
