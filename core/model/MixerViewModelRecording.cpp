// Recordings as the user sees them: what is being recorded, for how long, and where it went.

#include "core/model/MixerViewModel.h"
#include "core/model/PublishedEntries.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>

namespace orvanta {
namespace {

constexpr Seconds kNoticeTime{8.0};

// Two channels of 32-bit floats at 48 kHz, and 256 kbit/s. Meant for people: the tap's real rate
// and the second file of mode `both` do not enter.
constexpr double kWAVBytesPerSecond = 384000.0;
constexpr double kM4ABytesPerSecond = 32000.0;

constexpr std::int64_t kBytesPerMB = 1048576;
constexpr std::int64_t kBytesPerGB = 1073741824;

} // namespace

std::optional<std::string> MixerViewModel::recordingName(std::int32_t pid) const {
    if (auto name = entryOf(tappedAppNames_, pid))
        return name;
    const AudioApp* const app = findApp(audioApps.get(), pid);
    return app != nullptr ? std::optional(app->name) : std::nullopt;
}

void MixerViewModel::toggleRecording(std::int32_t pid) {
    if (isRecording(pid))
        stopRecording(pid);
    else
        startRecording(pid);
}

std::optional<std::filesystem::path> MixerViewModel::startRecording(std::int32_t pid) {
    const auto name = recordingName(pid);
    if (!name)
        return std::nullopt;
    const auto [wet, dry] = tapManager_->startRecording(
        pid, *name, recordingFormat.get(), recordingSaveDirectory.get(), recordingMode.get());
    if (wet || dry) {
        insertEntry(recordingPIDs, pid);
        setEntry(recordingDurations, pid, 0.0);
        showRecordingComplete.set(false);
    }
    return wet ? wet : dry;
}

std::optional<std::filesystem::path> MixerViewModel::stopRecording(std::int32_t pid) {
    const auto name = recordingName(pid);
    const auto [wet, dry] = tapManager_->stopRecording(pid);
    removeEntry(recordingPIDs, pid);
    removeEntry(recordingDurations, pid);
    auto url = wet ? wet : dry;
    if (!url)
        return std::nullopt;
    lastRecordingURL.set(url);
    lastRecordingAppName.set(name.value_or(""));
    showRecordingComplete.set(true);
    // A recording that finishes meanwhile has a notice of its own, and its own time.
    platform_.mainRunLoop.postAfter(kNoticeTime, weakly([url](MixerViewModel& self) {
                                        if (self.lastRecordingURL.get() == url)
                                            self.showRecordingComplete.set(false);
                                    }));
    return url;
}

void MixerViewModel::checkRecordingDurations() {
    const PIDSet recording = recordingPIDs.get();
    for (const std::int32_t pid : recording)
        if (const auto duration = entryOf(recordingDurations.get(), pid);
            duration && !(maxRecordingDuration.get() > *duration))
            stopRecording(pid);
}

std::int64_t MixerViewModel::estimatedFileSize(double duration) const {
    const double bytes =
        duration *
        (recordingFormat.get() == RecordingFormat::wav ? kWAVBytesPerSecond : kM4ABytesPerSecond);
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    if (std::isnan(bytes))
        return 0;
    if (std::abs(bytes) >= static_cast<double>(most))
        return bytes > 0.0 ? most : -most;
    return static_cast<std::int64_t>(bytes);
}

std::string MixerViewModel::formattedFileSize(double duration) const {
    const std::int64_t bytes = estimatedFileSize(duration);
    const auto size = static_cast<double>(bytes);
    if (bytes < kBytesPerMB)
        return fmt::format("{:.0f} KB", size / 1024.0);
    if (bytes < kBytesPerGB)
        return fmt::format("{:.1f} MB", size / static_cast<double>(kBytesPerMB));
    return fmt::format("{:.2f} GB", size / static_cast<double>(kBytesPerGB));
}

void MixerViewModel::revealLastRecording() {
    if (const auto& file = lastRecordingURL.get())
        platform_.fileViewer.activateFileViewerSelecting(*file);
}

} // namespace orvanta
