// Measures our processors and other people's turn about, in one thread, on the same material.

#include "bench/compare/Measurement.h"
#include "bench/compare/Settings.h"
#include "bench/compare/Stages.h"
#include "bench/compare/Table.h"
#include "core/dsp/FlushDenormals.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <sched.h>

namespace orvanta::compare {
namespace {

/// The highest one that this process may run on.
int lastProcessor() {
    cpu_set_t allowed;
    CPU_ZERO(&allowed);
    std::size_t last = 0;
    if (::sched_getaffinity(0, sizeof allowed, &allowed) == 0)
        for (std::size_t processor = 0; processor < CPU_SETSIZE; ++processor)
            if (CPU_ISSET(processor, &allowed))
                last = processor;
    return static_cast<int>(last);
}

struct Options {
    int processor = lastProcessor();
    std::size_t rounds = 41;
    std::vector<std::size_t> blockLengths = {64, 256, 512, 1024};
    bool onlyChecks = false;
};

constexpr std::size_t kFrames = 65536;

class Comparison {
public:
    explicit Comparison(const Options& options) : options_(options) {}

    /// Every contender must first show that it works; answers the timings.
    std::vector<std::vector<Timing>> compare(const Stage& stage) {
        for (const Entry& entry : stage.entries)
            for (const std::size_t blockFrames : options_.blockLengths)
                check(stage, entry, blockFrames);
        if (options_.onlyChecks)
            return {};
        std::vector<std::vector<Timing>> timings;
        for (const std::size_t blockFrames : options_.blockLengths) {
            std::vector<std::unique_ptr<Contender>> contenders;
            for (const Entry& entry : stage.entries)
                contenders.push_back(entry.make(blockFrames));
            timings.push_back(measureTurnAbout(contenders, music_, blockFrames, options_.rounds));
        }
        fmt::print("{}\n", table({stage, timings}, options_.blockLengths));
        std::fflush(stdout);
        return timings;
    }

    void printFindings() const { fmt::print("What they were seen to do:\n\n{}", findings_); }

    [[nodiscard]] bool isGood() const noexcept { return isGood_; }

private:
    void check(const Stage& stage, const Entry& entry, std::size_t blockFrames) {
        const Finding finding = entry.check(entry.make, blockFrames);
        if (!finding.isGood) {
            isGood_ = false;
            fmt::print(stderr, "{}, {}, blocks of {}: does not do its work: {}\n", stage.title,
                       entry.name, blockFrames, finding.text);
        }
        if (blockFrames == options_.blockLengths.back())
            findings_ += fmt::format("- {}, {}: {}\n", stage.title, entry.name, finding.text);
    }

    const Options& options_;
    const Signal music_ = music(kFrames, ratioOf(kMusicDB));
    std::string findings_;
    bool isGood_ = true;
};

/// The peer with the least median, all block lengths taken together.
std::string leanestPeer(const Stage& stage, const std::vector<std::vector<Timing>>& timings) {
    const Entry* leanest = nullptr;
    double least = 0.0;
    for (std::size_t entry = 0; entry < stage.entries.size(); ++entry) {
        double sum = 0.0;
        for (const auto& each : timings)
            sum += each[entry].median;
        if (!stage.entries[entry].isOurs && (leanest == nullptr || sum < least)) {
            leanest = &stage.entries[entry];
            least = sum;
        }
    }
    return leanest->name;
}

int run(const Options& options) {
    stayOnProcessor(options.processor);
    const FlushDenormals flush;
    Lv2World world;
    Comparison comparison(options);
    fmt::print(
        "ns of processor time per stereo frame: median (minimum) of {} rounds, and for peers "
        "the ratio of medians ours:peer, for each of ours in turn. Columns are frames a "
        "block.\n\n",
        options.rounds);

    const auto leanestOf = [&comparison](const Stage& stage) {
        return leanestPeer(stage, comparison.compare(stage));
    };
    const std::string eq = leanestOf(tenBandEQStage(world));
    comparison.compare(sixBandEQStage(world));
    comparison.compare(compressorStage(world));
    const std::string limiter = leanestOf(limiterStage(world));
    comparison.compare(crossfeedStage());
    comparison.compare(loudnessStage());
    comparison.compare(chainStage(world, eq, limiter));
    comparison.printFindings();
    return comparison.isGood() ? 0 : 1;
}

int runWith(int argc, char** argv) {
    Options options;
    CLI::App app("Our processors and other people's, measured turn about");
    app.add_option("--cpu", options.processor, "Processor to stay on")->capture_default_str();
    app.add_option("--rounds", options.rounds, "Turns of each contender")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
    app.add_option("--blocks", options.blockLengths, "Frames a block, powers of two up to 4096")
        ->check(CLI::IsMember({32, 64, 128, 256, 512, 1024, 2048, 4096}))
        ->capture_default_str();
    app.add_flag("--checks", options.onlyChecks, "Only see whether all do their work");
    CLI11_PARSE(app, argc, argv);
    return run(options);
}

} // namespace
} // namespace orvanta::compare

int main(int argc, char** argv) {
    try {
        return orvanta::compare::runWith(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvanta_compare: %s\n", error.what());
        return 1;
    }
}
