#include "tests/platform/media/support/KilledRecording.h"

#include "tests/platform/media/support/M4AReader.h"
#include "tests/platform/media/support/Material.h"
#include "tests/platform/media/support/MediaTools.h"
#include "tests/platform/media/support/SharedCounter.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/WavReader.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <chrono>
#include <functional>
#include <iostream>
#include <memory>
#include <random>
#include <thread>

namespace orvanta::test {
namespace {

constexpr std::uint64_t kSampleRate = 48000;
/// Of the recording program.
constexpr std::uint64_t kBlockFrames = 4800;

/// When a recording is killed: so long after so many frames were handed over, and whether these
/// were all of them, so that it is being finished meanwhile.
struct Moment {
    std::uint64_t frames = 0;
    std::chrono::microseconds after{};
    bool isAtTheEnd = false;
};

Moment randomMoment(std::mt19937& random, std::uint64_t mostFrames) {
    const auto upTo = [&random](std::uint64_t highest) {
        return std::uniform_int_distribution<std::uint64_t>(0, highest)(random);
    };
    const std::uint64_t blocks = 1 + upTo(mostFrames / kBlockFrames - 1);
    return {blocks * kBlockFrames, std::chrono::microseconds(upTo(2000)), upTo(3) == 0};
}

/// Records into the file, kills, and returns how many frames were handed over.
std::uint64_t recordAndKill(const std::string& coding, const std::filesystem::path& path,
                            const Moment& moment) {
    const std::filesystem::path counterPath = path.string() + ".counter";
    const SharedCounter counter(counterPath);
    ChildProcess recorder(
        {.command = {ORVANTA_KILLED_RECORDING, coding, path.string(), counterPath.string(),
                     std::to_string(moment.frames + (moment.isAtTheEnd ? 0 : kSampleRate))}});
    // No pause between two looks: the kill shall come at any point of a write.
    while (counter.get() < moment.frames && recorder.isRunning())
        std::this_thread::yield();
    const auto end = std::chrono::steady_clock::now() + moment.after;
    while (std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    EXPECT_TRUE(recorder.isRunning());
    recorder.kill();
    return counter.get();
}

std::int64_t framesSeenByLibsndfile(const std::filesystem::path& path) {
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, decltype(&sf_close)> file(sf_open(path.c_str(), SFM_READ, &info),
                                                             &sf_close);
    return file ? info.frames : -1;
}

void expectWAV(const std::filesystem::path& path, std::uint64_t handedOver) {
    WavReader reader(path);
    EXPECT_GE(reader.frames(), handedOver);
    EXPECT_EQ(framesSeenByLibsndfile(path), static_cast<std::int64_t>(reader.frames()));
    EXPECT_EQ(soxSays("-s", path), std::to_string(reader.frames()));
    const Material material = wanderingTones(kSampleRate);
    const std::vector<float> samples = reader.samples();
    for (std::size_t index = 0; index < samples.size(); ++index)
        ASSERT_EQ(samples[index], material(static_cast<std::uint32_t>(index % 2), index / 2));
}

void expectM4A(const std::filesystem::path& path, std::uint64_t handedOver) {
    const M4AContent content = readM4A(path);
    EXPECT_GT(content.framesToHear() + static_cast<std::int64_t>(kSampleRate),
              static_cast<std::int64_t>(handedOver));
    EXPECT_EQ(probed(path)["codec_name"], "aac");
    if (content.packets.empty())
        return;
    const std::vector<float> samples = decoded(path);
    // ffmpeg leaves the priming out by the table of a finished file only.
    const std::uint64_t priming = content.isFragmented ? 1024 : 0;
    const std::size_t whole = 2 * (static_cast<std::uint64_t>(content.framesToHear()) + priming);
    ASSERT_GE(samples.size(), whole);
    EXPECT_GT(
        signalToNoise(std::span(samples).first(whole), 2, wanderingTones(kSampleRate), priming),
        kGoodEncoding);
}

void killManyTimes(const std::string& coding, std::uint64_t mostFrames, int times,
                   const std::function<void(const std::filesystem::path&, std::uint64_t)>& expect) {
    const unsigned seed = std::random_device()();
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    for (int count = 0; count < times; ++count) {
        const TemporaryDirectory folder;
        const auto path = folder.path() / ("killed." + coding);
        const Moment moment = randomMoment(random, mostFrames);
        const std::uint64_t handedOver = recordAndKill(coding, path, moment);
        SCOPED_TRACE("seed " + std::to_string(seed) + ", kill " + std::to_string(count) +
                     (moment.isAtTheEnd ? " at its end" : "") +
                     ", frames handed over: " + std::to_string(handedOver));
        ASSERT_NO_FATAL_FAILURE(expect(path, handedOver));
    }
}

} // namespace

void expectKilledWAVFilesToBeWhole(int times) {
    killManyTimes("wav", 30 * kSampleRate, times, expectWAV);
}

void expectKilledM4AFilesToBeWhole(int times) {
    killManyTimes("m4a", 10 * kSampleRate, times, expectM4A);
}

} // namespace orvanta::test
