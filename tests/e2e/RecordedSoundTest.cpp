#include "tests/e2e/support/EndToEndTest.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/WavReader.h"

#include <algorithm>

namespace orvanta::test {
namespace {

using Path = std::filesystem::path;

/// Two channels of a capture, from the one told on, frame by frame.
std::vector<float> interleaved(const Capture& capture, std::size_t firstChannel) {
    std::vector<float> samples;
    for (std::size_t frame = 0; frame < capture.frames(); ++frame) {
        samples.push_back(capture.channels[firstChannel][frame]);
        samples.push_back(capture.channels[firstChannel + 1][frame]);
    }
    return samples;
}

/// Whether a stretch of sound is in a recording, every bit of it.
bool holds(const std::vector<float>& recording, const std::vector<float>& stretch) {
    return std::search(recording.begin(), recording.end(), stretch.begin(), stretch.end()) !=
           recording.end();
}

class RecordedSound : public EndToEndTest {
protected:
    void SetUp() override {
        EndToEndTest::SetUp();
        client_.open();
        stream_ = graph().awaitPlayback(client_.pid()).id;
    }

    [[nodiscard]] Capture heardForOneSecond() const {
        return recordUndisturbed(stream_, "speakers", 48000);
    }

    RecordingFiles start(RecordingFormat format, RecordingMode mode) {
        return mixer().manager().startRecording(client_.pid(), "Noise", format, folder_.path(),
                                                mode);
    }

    /// The files are whole when the tap is gone.
    void stop() {
        mixer().manager().stopRecording(client_.pid());
        mixer().manager().removeTap(client_.pid());
    }

    TemporaryDirectory folder_;
    StreamClient client_;
    std::uint32_t stream_ = 0;
};

TEST_F(RecordedSound, IsWhatTheDevicePlaysAndWhatTheProgramGivesToTheBit) {
    mixer().tap(client_.pid(), 0.5F);
    awaitTapped(client_.pid());
    mixer().manager().setEQ(client_.pid(), 7, 6.0F);
    const RecordingFiles files = start(RecordingFormat::wav, RecordingMode::both);
    const Capture heard = heardForOneSecond();
    stop();

    WavReader wet(files.wet.value());
    WavReader dry(files.dry.value());
    EXPECT_EQ(wet.sampleRate(), 48000U);
    EXPECT_EQ(wet.channels(), 2U);
    EXPECT_TRUE(holds(dry.samples(), interleaved(heard, 0))) << "what the program gave";
    EXPECT_TRUE(holds(wet.samples(), interleaved(heard, 2))) << "what the device got";
}

TEST_F(RecordedSound, GoesOnInSilenceWhileTheProgramPauses) {
    mixer().tap(client_.pid(), 1.0F);
    awaitTapped(client_.pid());
    client_.pause();
    const AudioTapManager& manager = mixer().manager();
    // At rest: no callback comes any more.
    ASSERT_TRUE(eventually(Seconds(20), [&] {
        const std::uint64_t before = manager.getCallbackCount(client_.pid());
        letTimePass(Seconds(0.3));
        return manager.getCallbackCount(client_.pid()) == before;
    }));
    const RecordingFiles files = start(RecordingFormat::wav, RecordingMode::processed);
    const std::uint64_t atRest = manager.getCallbackCount(client_.pid());
    ASSERT_TRUE(eventually(Seconds(20), [&] {
        return manager.getCallbackCount(client_.pid()) > atRest + 20;
    })) << "a recording wakes the tap";
    client_.resume();
    ASSERT_TRUE(
        eventually(Seconds(20), [&] { return manager.getAudioLevel(client_.pid())->peak > 0.0F; }));
    stop();

    const std::vector<float> samples = WavReader(files.wet.value()).samples();
    const auto firstSound =
        std::ranges::find_if(samples, [](float sample) { return sample != 0.0F; });
    EXPECT_GT(firstSound - samples.begin(), 20 * 2 * 64) << "the pause";
    EXPECT_NE(firstSound, samples.end()) << "and what followed it";
}

} // namespace
} // namespace orvanta::test
