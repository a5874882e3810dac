#pragma once

#include "core/model/PIDMap.h"
#include "core/platform/ProcessTable.h"
#include "core/platform/RunLoop.h"

#include <cstdint>

namespace orvanta {

/// What a process uses.
struct ProcessStats {
    double cpuPercent = 0; ///< of one core since the last reading, 0 to 800
    double memoryMB = 0;   ///< resident, in units of 2^20 bytes
    std::int64_t threadCount = 0;
    double virtualMemoryMB = 0; ///< in units of 2^20 bytes

    friend bool operator==(const ProcessStats&, const ProcessStats&) = default;
};

/// Processor time of a process, ns since its start, and when it was read.
struct CPUTimes {
    std::uint64_t user = 0;
    std::uint64_t system = 0;
    Seconds timestamp{};
};

/// One reading of several processes.
struct ProcessReadings {
    PIDMap<ProcessStats> stats;
    PIDMap<CPUTimes> cpuTimes;
};

/// Reads each of `pids` at the time `now`. The share of a core is reckoned from a process's entry
/// in `last`, and is 0 without one. A process that cannot be read is left out. From any thread.
[[nodiscard]] ProcessReadings collectProcessStats(const ProcessTable& processes, const PIDSet& pids,
                                                  const PIDMap<CPUTimes>& last, Seconds now);

} // namespace orvanta
