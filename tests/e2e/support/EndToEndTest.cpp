#include "tests/e2e/support/EndToEndTest.h"

#include "tests/support/WavFile.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iostream>
#include <iterator>
#include <limits>
#include <span>
#include <stdexcept>

namespace orvanta::test {

namespace {

bool isUnbroken(const std::vector<float>& channel) {
    const auto sounds = [](float sample) {
        return sample != 0.0F;
    };
    const auto first = std::find_if(channel.begin(), channel.end(), sounds);
    const auto last = std::find_if(channel.rbegin(), channel.rend(), sounds).base();
    // After a restart of the session manager PipeWire 0.3.65 gives a recorder nothing of one of the
    // stream's ports at times; what the device carries tells all the same.
    return first >= last || std::all_of(first, last, sounds);
}

} // namespace

void EndToEndTest::SetUp() {
    plugSpeakers();
}

void EndToEndTest::plugSpeakers() {
    const auto isDefault = [&] {
        return graph().defaultSink() == "speakers";
    };
    graph().plug({.name = "speakers"});
    if (eventually(Seconds(3), isDefault))
        return;
    std::cout << "the session manager overlooked the device; plugging it once more\n";
    graph().unplug("speakers");
    graph().plug({.name = "speakers"});
    graph().await("there is a default", isDefault);
}

void EndToEndTest::TearDown() {
    if (!HasFailure())
        return;
    std::cout << graph().describe() << server_.logTail();
    if (mixer_)
        std::cout << mixer_->logText();
}

MixerUnderTest& EndToEndTest::mixer() {
    if (!mixer_)
        mixer_ = std::make_unique<MixerUnderTest>();
    return *mixer_;
}

std::vector<std::uint32_t> EndToEndTest::monitorPorts(const std::string& device) const {
    const auto node = graph().node(device);
    return node ? graph().outputPorts(node->id, true) : std::vector<std::uint32_t>();
}

std::filesystem::path EndToEndTest::noiseFile(const NoiseSignal& noise, std::uint32_t sampleRate,
                                              std::uint32_t channels, Seconds duration) const {
    const auto frames = static_cast<std::size_t>(duration.count() * sampleRate);
    std::vector<std::vector<float>> samples;
    for (std::uint32_t channel = 0; channel < channels; ++channel)
        samples.push_back(noise.channel(channel, frames));
    auto path = server_.directory() / ("noise-" + std::to_string(samples[0][0]) + "-" +
                                       std::to_string(sampleRate) + ".wav");
    writeWavFile(path, sampleRate, samples);
    return path;
}

void EndToEndTest::awaitOnly(pid_t pid, const std::string& nodeName) const {
    graph().await("process " + std::to_string(pid) + " plays to " + nodeName + " alone", [&] {
        const auto streams = graph().playbackNodes(pid);
        return !streams.empty() && std::ranges::all_of(streams, [&](const GraphObject& stream) {
            return graph().targets(stream.id) == std::vector<std::string>{nodeName};
        });
    });
}

void EndToEndTest::awaitTapped(pid_t pid, Seconds bound) const {
    const auto isDevice = [&](const std::string& name) {
        const auto node = graph().node(name);
        return !node || node->get("factory.name") == "support.null-audio-sink";
    };
    graph().await(
        "process " + std::to_string(pid) + " plays to a tap alone",
        [&] {
            const auto streams = graph().playbackNodes(pid);
            return !streams.empty() && std::ranges::all_of(streams, [&](const GraphObject& stream) {
                const auto targets = graph().targets(stream.id);
                return targets.size() == 1 && !isDevice(targets[0]);
            });
        },
        bound);
}

Capture EndToEndTest::recordUndisturbed(std::uint32_t playbackNode, const std::string& device,
                                        std::size_t frames) const {
    std::vector<std::uint32_t> ports = graph().outputPorts(playbackNode);
    const std::size_t programs = ports.size();
    std::ranges::copy(monitorPorts(device), std::back_inserter(ports));
    return recordUndisturbed(ports, programs, frames);
}

Capture EndToEndTest::recordUndisturbed(const std::vector<std::uint32_t>& ports,
                                        std::size_t programs, std::size_t frames) const {
    const auto end = std::chrono::steady_clock::now() + mostRecordingTime;
    do {
        AlignedRecorder recorder(graph(), ports.size());
        recorder.listen(0, ports);
        // The links come one by one: what counts begins when all of them stand.
        recorder.record(4096);
        const std::size_t start = recorder.frames();
        recorder.record(frames);
        Capture capture = recorder.finish().from(start);
        const auto heard = std::span(capture.channels).first(programs);
        if (capture.discontinuities() == 0 && std::ranges::all_of(heard, isUnbroken))
            return capture;
    } while (std::chrono::steady_clock::now() < end);
    throw std::runtime_error("the machine missed cycles in every recording");
}

double EndToEndTest::mixResidual(const std::string& device,
                                 const std::vector<Voice>& voices) const {
    std::vector<std::uint32_t> ports;
    for (const Voice& voice : voices)
        ports.push_back(graph().outputPorts(graph().awaitPlayback(voice.pid).id).at(0));
    ports.push_back(monitorPorts(device).at(0));
    const Capture capture = recordUndisturbed(ports, voices.size(), 24000);

    const auto difference = [&](std::size_t index, std::size_t lag) {
        auto left = static_cast<double>(capture.channels.back()[index]);
        for (std::size_t voice = 0; voice < voices.size(); ++voice)
            left -= static_cast<double>(voices[voice].gain * capture.channels[voice][index - lag]);
        return std::abs(left);
    };
    // The monitor may lie a whole number of cycles after the streams.
    double best = std::numeric_limits<double>::infinity();
    const std::size_t cycle = capture.cycles.front().frames;
    for (std::size_t lag = 0; lag <= 4 * cycle; lag += cycle) {
        double residual = 0;
        for (std::size_t index = lag; index < capture.frames(); ++index)
            residual = std::max(residual, difference(index, lag));
        best = std::min(best, residual);
    }
    return best;
}

void EndToEndTest::expectSignal(const NoiseSignal& noise, Sound sound, std::uint32_t playbackNode,
                                const std::string& device) const {
    const Capture capture = recordUndisturbed(playbackNode, device, 24000);
    ASSERT_EQ(capture.channels.size(), 4U);
    for (std::uint32_t channel = 0; channel < 2; ++channel) {
        const PassageCounts counts =
            countPassages(capture.channels[2 + channel], noise, channel, 0.5F);
        EXPECT_EQ(sound == Sound::halved ? counts.gained : counts.leaked, capture.frames())
            << counts;
        EXPECT_EQ(counts.lost + counts.repeated, 0U) << counts;
    }
}

PassageCounts EndToEndTest::countPassages(const std::vector<float>& recorded,
                                          const NoiseSignal& noise, std::uint32_t channel,
                                          float gain) {
    return count(PassageReader(noise.channel(channel, signalFrames), gain).read(recorded));
}

} // namespace orvanta::test
