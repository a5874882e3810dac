// What a recording costs: the callback's part by the frame, the writer's part as a share of a core
// while it keeps up with real time, and the ffmpeg program's for the same encoding of the same
// sound.

#include "core/recording/SampleRing.h"
#include "platform/embedded/sounds/MusicLike.h"
#include "platform/media/MediaFileWriter.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace orvanta::bench {
namespace {

constexpr double kRate = 48000.0;
constexpr std::size_t kSeconds = 60;
constexpr std::size_t kFramesPerTick = 4800; ///< of the recorder's drain timer
constexpr std::size_t kTicks = kSeconds * 48000 / kFramesPerTick;

/// A folder of this process's own, gone at the end.
class Folder {
public:
    Folder() {
        std::string name = (std::filesystem::temp_directory_path() / "orvanta-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        path_ = name;
    }

    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    [[nodiscard]] std::filesystem::path newFile(const std::string& extension) {
        return path_ / (std::to_string(++count_) + "." + extension);
    }

private:
    std::filesystem::path path_;
    int count_ = 0;
};

/// A minute of a band, one vector a channel.
const std::array<std::vector<float>, 2>& music() {
    static const std::array<std::vector<float>, 2> channels = [] {
        std::vector<float> interleaved(kSeconds * 48000 * 2);
        embedded::musicLike()()->render(interleaved, kRate);
        std::array<std::vector<float>, 2> made;
        for (std::size_t k = 0; k < interleaved.size(); ++k)
            made[k % 2].push_back(interleaved[k]);
        return made;
    }();
    return channels;
}

/// Processor time, the system's part included.
double secondsUsed(int who) {
    rusage usage{};
    getrusage(who, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void writeMusic(const std::filesystem::path& path, const AudioFileSettings& settings) {
    MediaFileWriter writer;
    std::string reason;
    const auto file = writer.create(path, settings, reason);
    if (!file)
        throw std::runtime_error(reason);
    for (std::size_t tick = 0; tick < kTicks; ++tick) {
        const std::array<const float*, 2> channels{music()[0].data() + tick * kFramesPerTick,
                                                   music()[1].data() + tick * kFramesPerTick};
        if (const auto failure = file->write(channels, kFramesPerTick))
            throw std::runtime_error(*failure);
    }
}

/// The share of a core that the last minute took.
void report(benchmark::State& state, double secondsOfProcessor) {
    state.SetIterationTime(secondsOfProcessor);
    state.counters["percentOfCore"] = 100.0 * secondsOfProcessor / static_cast<double>(kSeconds);
}

void writeFile(benchmark::State& state, const AudioFileSettings& settings,
               const std::string& extension) {
    music();
    Folder folder;
    for (auto each : state) {
        (void)each;
        const double before = secondsUsed(RUSAGE_THREAD);
        writeMusic(folder.newFile(extension), settings);
        report(state, secondsUsed(RUSAGE_THREAD) - before);
    }
}

void writeWAV(benchmark::State& state) {
    writeFile(state, {}, "wav");
}

void writeM4A(benchmark::State& state) {
    writeFile(state, {AudioFileSettings::Coding::aacMPEG4, kRate, 2, 256000}, "m4a");
}

/// The ffmpeg program from one file to another.
void convert(benchmark::State& state, const std::string& options, const std::string& extension) {
    Folder folder;
    const std::filesystem::path source = folder.newFile("wav");
    writeMusic(source, {});
    for (auto each : state) {
        (void)each;
        const double before = secondsUsed(RUSAGE_CHILDREN);
        const std::string command = "ffmpeg -v error -threads 1 -i " + source.string() + " " +
                                    options + " " + folder.newFile(extension).string();
        if (std::system(command.c_str()) != 0) {
            state.SkipWithError("ffmpeg failed");
            return;
        }
        report(state, secondsUsed(RUSAGE_CHILDREN) - before);
    }
}

void ffmpegWAV(benchmark::State& state) {
    convert(state, "-c:a pcm_f32le", "wav");
}

void ffmpegM4A(benchmark::State& state) {
    convert(state, "-c:a aac -b:a 256k", "m4a");
}

/// One block into the ring, and out of it again so that it never fills.
void passThroughRing(benchmark::State& state) {
    SampleRing ring(2);
    const auto frames = static_cast<std::int64_t>(state.range(0));
    const std::vector<float> block(static_cast<std::size_t>(frames) * 2, 0.5F);
    for (auto each : state) {
        (void)each;
        ring.writeInterleavedSamples(block.data(), frames * 2);
        ring.consume(frames);
    }
    state.counters["perFrame"] = benchmark::Counter(static_cast<double>(frames),
                                                    benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}

void passThroughRingPlanar(benchmark::State& state) {
    SampleRing ring(2);
    const auto frames = static_cast<std::int64_t>(state.range(0));
    const std::vector<float> block(static_cast<std::size_t>(frames), 0.5F);
    for (auto each : state) {
        (void)each;
        ring.writeSamples(block.data(), frames, 0);
        ring.writeSamples(block.data(), frames, 1);
        ring.consume(frames);
    }
    state.counters["perFrame"] = benchmark::Counter(static_cast<double>(frames),
                                                    benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}

BENCHMARK(passThroughRing)->Name("recording/ring/interleaved")->Arg(64)->Arg(256)->Arg(1024);
BENCHMARK(passThroughRingPlanar)->Name("recording/ring/planar")->Arg(64)->Arg(256)->Arg(1024);
BENCHMARK(writeWAV)->Name("recording/wav")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ffmpegWAV)->Name("recording/wav/ffmpeg")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(writeM4A)->Name("recording/m4a")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ffmpegM4A)->Name("recording/m4a/ffmpeg")->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace orvanta::bench
