#pragma once

#include "tests/e2e/support/AlignedRecorder.h"
#include "tests/e2e/support/AudioGraph.h"
#include "tests/e2e/support/MixerUnderTest.h"
#include "tests/e2e/support/NoiseSignal.h"
#include "tests/e2e/support/Passages.h"
#include "tests/e2e/support/PrivateAudioServer.h"
#include "tests/e2e/support/RealPlayer.h"
#include "tests/e2e/support/StreamClient.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace orvanta::test {

/// In frames of the private servers.
inline constexpr std::size_t halfASecond = 24000;

/// A private server with one stereo device, "speakers", which is the default.
class EndToEndTest : public testing::Test {
protected:
    /// The engine's longest chain of delays after a change of devices, and what its calls take. A
    /// tap may be re-routed meanwhile, with a moment of silence each time.
    static constexpr Seconds passesTake{2.5};

    /// A recording in which cycles are missing is made again for so long: a shared machine may be
    /// busy with others for a while.
    static constexpr std::chrono::seconds mostRecordingTime{40};

    /// Long enough for every recording of a test.
    static constexpr std::size_t signalFrames = 30UL * 48000UL;

    void SetUp() override;
    /// Tells what there was when a test has failed.
    void TearDown() override;

    /// Makes the device and waits until it is the default. The session manager overlooks one now
    /// and then that comes while it is busy starting; such a device is plugged in a second time.
    void plugSpeakers();

    /// The engine, made on first use.
    MixerUnderTest& mixer();

    [[nodiscard]] std::vector<std::uint32_t> monitorPorts(const std::string& device) const;

    /// A file of the noise signal.
    [[nodiscard]] std::filesystem::path noiseFile(const NoiseSignal& noise,
                                                  std::uint32_t sampleRate = 48000,
                                                  std::uint32_t channels = 2,
                                                  Seconds duration = Seconds(30)) const;

    /// Waits until every stream of the process plays to this node and to nothing else.
    void awaitOnly(pid_t pid, const std::string& nodeName) const;
    /// Waits until every stream of the process plays to one node that is none of the tests'
    /// devices, and to nothing else.
    void awaitTapped(pid_t pid, Seconds bound = Seconds(10)) const;

    /// Records a stream's channels (first) and a device's monitor (after them) side by side, again
    /// if the machine missed a cycle: only such recordings tell what the code does.
    [[nodiscard]] Capture recordUndisturbed(std::uint32_t playbackNode, const std::string& device,
                                            std::size_t frames) const;

    struct Voice {
        pid_t pid = 0;
        float gain = 1;
    };

    /// Records half a second of a device beside the streams of these programs (one each) and
    /// returns the largest difference between the device's left channel and the sum of theirs,
    /// each times its gain. Records again if the machine missed a cycle.
    [[nodiscard]] double mixResidual(const std::string& device,
                                     const std::vector<Voice>& voices) const;

    /// Counts of one recorded channel against one channel of the signal.
    [[nodiscard]] static PassageCounts countPassages(const std::vector<float>& recorded,
                                                     const NoiseSignal& noise,
                                                     std::uint32_t channel, float gain);

    /// What of a program's sound a device is to carry.
    enum class Sound {
        halved, ///< through a tap of half the volume
        own,    ///< as the program plays it
    };

    /// Records half a second of a device beside a stream that plays the signal: each side of the
    /// device carries the same side of the signal, sample for sample, and nothing else.
    void expectSignal(const NoiseSignal& noise, Sound sound, std::uint32_t playbackNode,
                      const std::string& device = "speakers") const;

    /// A few units in the last place of a float, at the levels of the signals.
    static constexpr double rounding = 2e-7;

    PrivateAudioServer server_;
    std::optional<AudioGraph> graphStorage_{std::in_place};

    const AudioGraph& graph() const { return *graphStorage_; }

    /// After the server was started anew.
    void reconnectGraph() { graphStorage_.emplace(); }

private:
    /// Records the inputs' ports until a recording of the first `programs` inputs has no hole.
    [[nodiscard]] Capture recordUndisturbed(const std::vector<std::uint32_t>& ports,
                                            std::size_t programs, std::size_t frames) const;

    std::unique_ptr<MixerUnderTest> mixer_;
};

} // namespace orvanta::test
