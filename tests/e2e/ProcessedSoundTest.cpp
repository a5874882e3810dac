#include "core/dsp/FlushDenormals.h"
#include "tests/e2e/support/EndToEndTest.h"
#include "tests/support/reference/Equaliser.h"
#include "tests/support/reference/Limiter.h"
#include "tests/support/reference/ReferenceCompressor.h"
#include "tests/support/reference/Stereo.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvanta::test {
namespace {

constexpr double rate = 48000.0;
constexpr float volume = 1.5F;
constexpr float width = 1.4F;
constexpr float crossfeed = 0.4F;
/// No low bands: what a filter at 31 Hz rounds away in single precision is heard in it for so long
/// that two of them which began at different moments never agree to more than some 60 dB.
const EQPreset equaliser(std::array{0.0F, 0.0F, 0.0F, 0.0F, 2.0F, 4.0F, 4.0F, 3.0F, 1.0F, -2.0F});

/// The chain once more, plainly and all at once, with the settings below.
class PlainChain {
public:
    void process(std::vector<float>& left, std::vector<float>& right) {
        const FlushDenormals flush;
        for (std::size_t band = 0; band < reference::Equaliser::kBands; ++band)
            equaliser_.setGain(band, equaliser.gains[band]);
        compressor_.apply(CompressorPreset::broadcast);
        crossfeed_.amount = crossfeed;
        // The stages take blocks up to a length; how the signal is cut changes nothing.
        for (std::size_t done = 0; done < left.size(); done += block) {
            const std::size_t count = std::min(block, left.size() - done);
            processChannel(left.data() + done, count, 0);
            processChannel(right.data() + done, count, 1);
            processStereo(left, right, done, count);
        }
    }

private:
    static constexpr std::size_t block = 1024;

    void processChannel(float* samples, std::size_t count, std::size_t channel) {
        for (std::size_t k = 0; k < count; ++k)
            samples[k] *= volume;
        equaliser_.process(samples, count, channel);
        compressor_.process(samples, count, channel);
        limiter_.process(samples, count, channel);
    }

    void processStereo(std::vector<float>& left, std::vector<float>& right, std::size_t from,
                       std::size_t count) {
        const auto part = [&](std::vector<float>& samples) {
            const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(from);
            return std::vector<float>(begin, begin + static_cast<std::ptrdiff_t>(count));
        };
        std::vector<float> leftPart = part(left);
        std::vector<float> rightPart = part(right);
        reference::widen(leftPart, rightPart, width);
        crossfeed_.process(leftPart, rightPart);
        std::copy(leftPart.begin(), leftPart.end(),
                  left.begin() + static_cast<std::ptrdiff_t>(from));
        std::copy(rightPart.begin(), rightPart.end(),
                  right.begin() + static_cast<std::ptrdiff_t>(from));
    }

    reference::Equaliser equaliser_{rate, 2};
    reference::Compressor<reference::ApproximatePowers> compressor_{rate, 2, block};
    reference::Limiter limiter_{rate, 2};
    reference::Crossfeed crossfeed_{rate};
};

double distance(float a, float b) {
    return std::fabs(static_cast<double>(a) - static_cast<double>(b));
}

class ProcessedSound : public EndToEndTest {
protected:
    void setEverything(pid_t pid) {
        AudioTapManager& manager = mixer().manager();
        for (int band = 0; band < kEQBandCount; ++band)
            manager.setEQ(pid, band, equaliser.gains[static_cast<std::size_t>(band)]);
        manager.setCompressor(pid, CompressorPreset::broadcast);
        manager.setLimiterEnabled(pid, true);
        manager.setStereoWidth(pid, width);
        manager.setCrossfeed(pid, crossfeed);
    }
};

TEST_F(ProcessedSound, ReachesTheDeviceAsThePlainChainMakesItOfWhatTheProgramPlays) {
    StreamClient client;
    client.open();
    const std::uint32_t stream = graph().awaitPlayback(client.pid()).id;
    mixer().tap(client.pid(), volume);
    awaitTapped(client.pid());
    setEverything(client.pid());

    constexpr std::size_t seconds = 5;
    const Capture capture = recordUndisturbed(stream, "speakers", seconds * 48000);
    ASSERT_EQ(capture.sampleRate, 48000U);
    ASSERT_EQ(capture.channels.size(), 4U);
    std::vector<float> left = capture.channels[0];
    std::vector<float> right = capture.channels[1];
    PlainChain chain;
    chain.process(left, right);
    // What the recording did not hear of the beginning has faded from every filter by then.
    constexpr std::size_t settled = 3UL * 48000UL;
    const auto difference = [&](std::size_t lag) {
        double largest = 0;
        for (std::size_t k = settled; k + lag < capture.frames(); ++k)
            largest = std::max({largest, distance(left[k], capture.channels[2][k + lag]),
                                distance(right[k], capture.channels[3][k + lag])});
        return largest;
    };
    // A device's monitor is heard one cycle after what it plays, tapped or not.
    const std::size_t cycle = capture.cycles.at(0).frames;
    RecordProperty("largest difference", std::to_string(difference(cycle)));
    EXPECT_LT(difference(cycle), 1e-4);
    EXPECT_GT(difference(cycle + 1), 0.1) << "to the sample";
    const auto reduction = mixer().manager().getCompressorGainReduction(client.pid());
    ASSERT_TRUE(reduction);
    EXPECT_GT((*reduction)[1], 1.0F) << "the compressor was at work";
}

} // namespace
} // namespace orvanta::test
