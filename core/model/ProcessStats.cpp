#include "core/model/ProcessStats.h"

#include <algorithm>

namespace orvanta {
namespace {

constexpr double kBytesPerMegabyte = 1048576.0;
constexpr double kNanosecondsPerSecond = 1'000'000'000.0;
constexpr double kHighestPercent = 800.0;

double cpuPercent(const ProcessTaskInfo& info, const CPUTimes& last, Seconds now) {
    const double elapsed = (now - last.timestamp).count();
    if (elapsed <= 0.0)
        return 0.0;
    const std::uint64_t used = info.totalUser + info.totalSystem - (last.user + last.system);
    const double percent = static_cast<double>(used) / kNanosecondsPerSecond / elapsed * 100.0;
    return std::clamp(percent, 0.0, kHighestPercent);
}

double inMB(std::uint64_t bytes) {
    return static_cast<double>(bytes) / kBytesPerMegabyte;
}

} // namespace

ProcessReadings collectProcessStats(const ProcessTable& processes, const PIDSet& pids,
                                    const PIDMap<CPUTimes>& last, Seconds now) {
    ProcessReadings readings;
    for (const std::int32_t pid : pids) {
        const auto info = processes.taskInfo(pid);
        if (!info)
            continue;
        const auto before = last.find(pid);
        readings.stats[pid] = {
            .cpuPercent = before == last.end() ? 0.0 : cpuPercent(*info, before->second, now),
            .memoryMB = inMB(info->residentSize),
            .threadCount = info->threadCount,
            .virtualMemoryMB = inMB(info->virtualSize)};
        readings.cpuTimes[pid] = {
            .user = info->totalUser, .system = info->totalSystem, .timestamp = now};
    }
    return readings;
}

} // namespace orvanta
