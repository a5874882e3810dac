#pragma once

#include "core/model/MixerViewModel.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace orvanta::cli {

/// How loud one tapped application is, linear.
struct MeterReading {
    std::int32_t pid = 0;
    std::string name;
    float rms = 0;
    float peak = 0;
};

/// Of all that is tapped, by process id. On the main thread.
[[nodiscard]] std::vector<MeterReading> readMeters(const MixerViewModel& model);

/// "pid=101 name="Music" rms=-18.2 peak=-11.9", in dB, a line each.
[[nodiscard]] std::string meterLines(const std::vector<MeterReading>& readings);

/// Bars that are drawn over those before: the cursor stands below them and stays where it is.
class MeterPicture {
public:
    /// What to write to the terminal, which has so many columns and rows.
    [[nodiscard]] std::string drawn(const std::vector<MeterReading>& readings, std::size_t columns,
                                    std::size_t rows);

private:
    std::size_t height_ = 0;
};

} // namespace orvanta::cli
