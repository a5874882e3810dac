#include "cli/mix/Meters.h"

#include "cli/mix/Answer.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace orvanta::cli {
namespace {

constexpr std::size_t kNameWidth = 24;
/// Of a line, name and figure with what parts them.
constexpr std::size_t kTextWidth = kNameWidth + 12;
constexpr std::size_t kWidestBar = 60;
/// Where a bar begins, dB.
constexpr float kLowest = -60.0F;

// What terminals understand.
constexpr const char* kSaveCursor = "\0337";
constexpr const char* kRestoreCursor = "\0338";
constexpr const char* kClearLine = "\033[K";
constexpr const char* kClearBelow = "\033[J";

float decibels(float linear) {
    return 20.0F * std::log10(linear);
}

std::string decibelText(float linear) {
    return linear > 0.0F ? fmt::format("{:.1f}", decibels(linear)) : "-inf";
}

std::string bar(float peak, std::size_t width) {
    const float share = peak > 0.0F ? 1.0F - decibels(peak) / kLowest : 0.0F;
    const auto filled =
        static_cast<std::size_t>(std::clamp(share, 0.0F, 1.0F) * static_cast<float>(width));
    return std::string(filled, '#') + std::string(width - filled, '.');
}

std::string row(const MeterReading& reading, std::size_t barWidth) {
    return fmt::format("{:<{}.{}} {} {:>6} dB", reading.name, kNameWidth, kNameWidth,
                       bar(reading.peak, barWidth), decibelText(reading.peak));
}

} // namespace

std::vector<MeterReading> readMeters(const MixerViewModel& model) {
    std::vector<MeterReading> readings;
    for (const std::int32_t pid : model.tappedPIDs.get())
        readings.push_back({.pid = pid,
                            .name = valueOr(model.tappedAppNames(), pid, std::string()),
                            .rms = valueOr(model.audioRmsLevels.get(), pid, 0.0F),
                            .peak = model.audioLevel(pid)});
    return readings;
}

std::string meterLines(const std::vector<MeterReading>& readings) {
    std::string lines;
    for (const MeterReading& reading : readings)
        lines += Answer()
                     .number("pid", reading.pid)
                     .text("name", reading.name)
                     .word("rms", decibelText(reading.rms))
                     .word("peak", decibelText(reading.peak))
                     .line();
    return lines;
}

/// Where the number of bars has changed, what has been typed below them meanwhile is cleared too;
/// it still counts.
std::string MeterPicture::drawn(const std::vector<MeterReading>& readings, std::size_t columns,
                                std::size_t rows) {
    const std::size_t height = std::min(readings.size(), std::max<std::size_t>(rows, 3) - 2);
    const std::size_t barWidth =
        std::clamp<std::size_t>(columns, kTextWidth + 1, kTextWidth + kWidestBar) - kTextWidth;
    const bool isOver = height == height_ && height_ > 0;
    std::string text = isOver ? kSaveCursor : "";
    if (height_ > 0)
        text += fmt::format("\r\033[{}A", height_);
    if (!isOver)
        text += kClearBelow;
    for (std::size_t index = 0; index < height; ++index)
        text += row(readings[index], barWidth) + kClearLine + "\n";
    if (isOver)
        text += kRestoreCursor;
    height_ = height;
    return text;
}

} // namespace orvanta::cli
