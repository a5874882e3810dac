#pragma once

#include "core/dsp/kernels/Kernels.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// What the benchmarks of single processors share. Compare the versions of one processor within
/// one run, `perFrame` by `perFrame`: "reference" is the plain scalar text of the tests.
namespace orvanta::bench {

inline constexpr double kRate = 48000.0;

enum class Layout {
    mono,        ///< one buffer of one channel
    planar,      ///< two buffers of one channel each
    interleaved, ///< one buffer of two channels
};

/// The buffers of one block.
struct Block {
    Block(Layout layoutOfIt, std::size_t frameCount);

    /// In one buffer of all channels.
    [[nodiscard]] std::size_t sampleCount() const noexcept { return left.size(); }

    Layout layout;
    std::size_t frames;
    std::vector<float> left; ///< all there is, unless planar
    std::vector<float> right;
};

/// A stretch of noise, loud and soft by turns, handed out block by block and over again.
class Noise {
public:
    explicit Noise(float amplitude);

    void fill(Block& block);

private:
    void fill(std::vector<float>& buffer);

    std::vector<float> samples_;
    std::size_t position_ = 0;
};

/// Processes one block in place.
using Runner = std::function<void(Block&)>;
using RunnerFactory = std::function<Runner()>;

/// Drives a processor of single channels as the callback does: an interleaved buffer is one channel
/// to it, and two planar ones go in together where it takes them so.
template <class Processor>
void processChannels(Processor& processor, Block& block) {
    processor.process(block.left.data(), block.sampleCount(), 0);
    if (block.layout == Layout::planar)
        processor.process(block.right.data(), block.frames, 1);
}

template <class Processor>

requires requires(Processor& processor, float* samples, std::size_t count) {
    processor.processPair(samples, samples, count);
}

void processChannels(Processor& processor, Block& block) {
    if (block.layout == Layout::planar)
        processor.processPair(block.left.data(), block.right.data(), block.frames);
    else
        processor.process(block.left.data(), block.sampleCount(), 0);
}

template <class Processor>
Runner channelRunner(std::shared_ptr<Processor> processor) {
    return [processor = std::move(processor)](Block& block) {
        processChannels(*processor, block);
    };
}

/// Registers "name/layout/frames" for 64, 256 and 1024 frames. Answers true, for a constant to
/// hold.
bool registerBlocks(const std::string& name, const std::vector<Layout>& layouts,
                    const RunnerFactory& make);

/// The same as "processor/instruction set/…" for each set that this machine runs.
bool registerVersions(const std::string& processor, const std::vector<Layout>& layouts,
                      const std::function<Runner(const Kernels&)>& make);

/// "denormals/processor/…": a minute of noise, of silence and of noise at 1e-39, each after a loud
/// burst that leaves every filter ringing out.
bool registerDenormals(const std::string& processor, const RunnerFactory& make);

} // namespace orvanta::bench
