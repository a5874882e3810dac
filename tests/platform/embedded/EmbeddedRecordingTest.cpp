#include "platform/embedded/EmbeddedAudioServer.h"
#include "platform/embedded/sounds/WavFile.h"
#include "tests/platform/embedded/TemporaryFile.h"

#include <gmock/gmock.h>
#include <sndfile.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <functional>
#include <future>
#include <thread>

namespace orvanta::embedded {
namespace {

using test::TemporaryFile;
using testing::Each;
using testing::ElementsAreArray;

struct ReadBack {
    SF_INFO info{};
    std::vector<float> samples;
};

ReadBack readBack(const std::string& path) {
    ReadBack result;
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &result.info);
    EXPECT_NE(file, nullptr) << sf_strerror(nullptr);
    if (file == nullptr)
        return result;
    result.samples.resize(static_cast<std::size_t>(result.info.frames * result.info.channels));
    sf_readf_float(file, result.samples.data(), result.info.frames);
    sf_close(file);
    return result;
}

/// Frames that the header tells; it is written last.
std::uint32_t framesInHeader(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string bytes(100, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    const std::size_t data = bytes.find("data");
    std::uint32_t size = 0;
    if (data != std::string::npos && data + 8 <= bytes.size())
        std::memcpy(&size, bytes.data() + data + 4, sizeof size);
    return size / (2 * sizeof(float));
}

TEST(EmbeddedRecording, WritesWhatADevicePlaysToAWavFile) {
    const TemporaryFile file("played.wav");
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice({.uid = "speakers", .sampleRate = 44100});
    server.addProgram({.pid = 100, .source = stereoTone(440, 660)});
    server.step(speakers);
    server.clearPlayed(speakers);

    ASSERT_TRUE(server.startRecording(speakers, file.path()));
    server.step(speakers, 100);
    server.stopRecording(speakers);
    const auto played = server.played(speakers);
    server.step(speakers);

    const ReadBack read = readBack(file.path());
    EXPECT_EQ(read.info.samplerate, 44100);
    EXPECT_EQ(read.info.channels, 2);
    EXPECT_EQ(read.info.format & SF_FORMAT_TYPEMASK, SF_FORMAT_WAV);
    EXPECT_EQ(read.info.format & SF_FORMAT_SUBMASK, SF_FORMAT_FLOAT);
    EXPECT_THAT(read.samples, ElementsAreArray(played));
}

TEST(EmbeddedRecording, EndsWithTheDevice) {
    const TemporaryFile file("unplugged.wav");
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice({.uid = "speakers", .framesPerCycle = 100});
    server.startRecording(speakers, file.path());
    server.step(speakers, 3);
    server.removeDevice(speakers);
    EXPECT_EQ(readBack(file.path()).info.frames, 300);
}

/// A silent source whose end takes until it is let go.
class LingeringSource final : public SoundSource {
public:
    struct Doors {
        std::promise<void> entered;
        std::promise<void> release;
    };

    explicit LingeringSource(Doors& doors) : doors_(doors) {}

    ~LingeringSource() override {
        doors_.entered.set_value();
        doors_.release.get_future().wait();
    }

    [[nodiscard]] std::uint32_t channels() const noexcept override { return 1; }

    void render(std::span<float> interleaved, double /*sampleRate*/) noexcept override {
        std::fill(interleaved.begin(), interleaved.end(), 0.0F);
    }

private:
    Doors& doors_;
};

class EmbeddedRecordingEnd : public testing::Test {
protected:
    EmbeddedRecordingEnd() {
        server.startRecording(speakers, file.path());
        server.step(speakers, 3);
        // While this thread frees what the cycles used before, it holds the recorder as well.
        changer = std::thread([this] { server.setSource(music, {}); });
        doors.entered.get_future().wait();
    }

    ~EmbeddedRecordingEnd() override {
        doors.release.set_value();
        changer.join();
    }

    LingeringSource::Doors doors;
    const TemporaryFile file{"ended.wav"};
    EmbeddedAudioServer server;
    AudioObjectID speakers = server.addDevice({.uid = "speakers", .framesPerCycle = 100});
    AudioObjectID music = server.addProgram({.pid = 100, .source = [this] {
                                                 return std::make_unique<LingeringSource>(doors);
                                             }});
    std::thread changer;
};

TEST_F(EmbeddedRecordingEnd, LeavesACompleteFileWhileAnotherChangeIsUnderWay) {
    server.stopRecording(speakers);
    EXPECT_EQ(framesInHeader(file.path()), 300U);
}

TEST_F(EmbeddedRecordingEnd, LeavesACompleteFileWhenTheDeviceGoes) {
    server.removeDevice(speakers);
    EXPECT_EQ(framesInHeader(file.path()), 300U);
}

TEST_F(EmbeddedRecordingEnd, LeavesACompleteFileWhenAnotherBegins) {
    const TemporaryFile next("next.wav");
    ASSERT_TRUE(server.startRecording(speakers, next.path()));
    EXPECT_EQ(framesInHeader(file.path()), 300U);
}

/// A silent source that calls this in each cycle.
class CallingSource final : public SoundSource {
public:
    explicit CallingSource(const std::function<void()>& call) : call_(call) {}

    [[nodiscard]] std::uint32_t channels() const noexcept override { return 1; }

    void render(std::span<float> interleaved, double /*sampleRate*/) noexcept override {
        std::fill(interleaved.begin(), interleaved.end(), 0.0F);
        call_();
    }

private:
    const std::function<void()>& call_;
};

TEST(EmbeddedRecording, EndedWithinACycleIsCompleteWithoutThatCycle) {
    const TemporaryFile file("within.wav");
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice({.uid = "speakers", .framesPerCycle = 100});
    server.startRecording(speakers, file.path());
    server.step(speakers, 2);
    std::uint32_t frames = 0;
    const std::function<void()> end = [&] {
        server.stopRecording(speakers);
        frames = framesInHeader(file.path());
    };
    server.addProgram({.pid = 100, .source = [&] {
                           return std::make_unique<CallingSource>(end);
                       }});
    server.step(speakers);
    EXPECT_EQ(frames, 200U);
    EXPECT_EQ(readBack(file.path()).info.frames, 200);
}

TEST(EmbeddedRecording, RefusesWhatCannotBeWritten) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice({.uid = "speakers"});
    EXPECT_FALSE(server.startRecording(speakers, "/no such folder/played.wav"));
    EXPECT_FALSE(server.startRecording(777, TemporaryFile("nothing.wav").path()));
    server.stopRecording(speakers);
}

/// A file written by the server itself is what programs then play.
class EmbeddedWavSource : public testing::Test {
protected:
    void record(const Sound& sound, double sampleRate, std::uint32_t frames) {
        EmbeddedAudioServer server;
        const auto device = server.addDevice(
            {.uid = "recorder", .sampleRate = sampleRate, .framesPerCycle = frames});
        server.addProgram({.pid = 1, .source = sound});
        server.startRecording(device, file.path());
        server.step(device);
    }

    static std::vector<float> play(const Sound& sound, double sampleRate, std::uint32_t frames) {
        EmbeddedAudioServer server;
        const auto device =
            server.addDevice({.uid = "player", .sampleRate = sampleRate, .framesPerCycle = frames});
        server.addProgram({.pid = 1, .source = sound});
        server.step(device);
        return server.played(device, 0);
    }

    TemporaryFile file{"source.wav"};
};

TEST_F(EmbeddedWavSource, PlaysItsSamplesUntouchedAtItsOwnRate) {
    record(noise(), 48000, 500);
    EXPECT_THAT(play(wavFile(file.path()), 48000, 500),
                ElementsAreArray(play(noise(), 48000, 500)));
}

TEST_F(EmbeddedWavSource, StartsAgainOrFallsSilentAtItsEnd) {
    record(counting(), 48000, 100);
    const auto repeated = play(wavFile(file.path()), 48000, 150);
    EXPECT_EQ(repeated[100], repeated[0]);
    EXPECT_EQ(repeated[149], repeated[49]);
    const auto once = play(wavFile(file.path(), AtEnd::fallSilent), 48000, 150);
    EXPECT_EQ(once[99], repeated[99]);
    EXPECT_THAT(std::vector(once.begin() + 100, once.end()), Each(0.0F));
}

TEST_F(EmbeddedWavSource, KeepsItsPitchOnADeviceOfAnotherRate) {
    record(tone(441), 44100, 44100);
    const auto resampled = play(wavFile(file.path()), 48000, 4800);
    const auto wanted = play(tone(441), 48000, 4800);
    for (std::size_t frame = 0; frame < wanted.size(); ++frame)
        ASSERT_NEAR(resampled[frame], wanted[frame], 1e-4) << frame;
}

TEST_F(EmbeddedWavSource, IsEmptyWhenItCannotBeRead) {
    EXPECT_FALSE(wavFile("no such file.wav"));
    EXPECT_THAT(play(wavFile("no such file.wav"), 48000, 10), Each(0.0F));
}

} // namespace
} // namespace orvanta::embedded
