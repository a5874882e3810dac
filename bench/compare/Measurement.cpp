#include "bench/compare/Measurement.h"

#include <algorithm>
#include <ctime>
#include <sched.h>
#include <stdexcept>
#include <string>

namespace orvanta::compare {
namespace {

/// Long enough to measure a few ns a frame, and a multiple of every block length.
constexpr std::size_t kFramesPerTurn = 32768;

double threadTimeInNs() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

/// ns per frame.
double takeTurn(Contender& contender, const Signal& signal, std::size_t first,
                std::size_t blockFrames) {
    const double start = threadTimeInNs();
    for (std::size_t done = 0; done < kFramesPerTurn; done += blockFrames) {
        contender.load(signal, first + done, blockFrames);
        contender.run(blockFrames);
    }
    return (threadTimeInNs() - start) / static_cast<double>(kFramesPerTurn);
}

Timing timingOf(std::vector<double>& turns) {
    std::sort(turns.begin(), turns.end());
    return {turns[turns.size() / 2], turns.front()};
}

} // namespace

std::vector<Timing> measureTurnAbout(const std::vector<std::unique_ptr<Contender>>& contenders,
                                     const Signal& signal, std::size_t blockFrames,
                                     std::size_t rounds) {
    const std::size_t stretches = signal.frames() / kFramesPerTurn;
    if (stretches == 0 || kFramesPerTurn % blockFrames != 0)
        throw std::invalid_argument("blocks must divide " + std::to_string(kFramesPerTurn));
    std::vector<std::vector<double>> turns(contenders.size());
    // The first round fills caches and states and is not counted.
    for (std::size_t round = 0; round <= rounds; ++round) {
        const std::size_t first = round % stretches * kFramesPerTurn;
        for (std::size_t turn = 0; turn < contenders.size(); ++turn) {
            const std::size_t each = (round + turn) % contenders.size();
            const double time = takeTurn(*contenders[each], signal, first, blockFrames);
            if (round > 0)
                turns[each].push_back(time);
        }
    }
    std::vector<Timing> timings;
    std::transform(turns.begin(), turns.end(), std::back_inserter(timings), timingOf);
    return timings;
}

void stayOnProcessor(int processor) {
    cpu_set_t only;
    CPU_ZERO(&only);
    CPU_SET(static_cast<std::size_t>(processor), &only);
    if (sched_setaffinity(0, sizeof only, &only) != 0)
        throw std::runtime_error("cannot stay on processor " + std::to_string(processor));
}

} // namespace orvanta::compare
