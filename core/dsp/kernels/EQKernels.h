#pragma once

#include <cstddef>

namespace orvanta {

/// The most filters that a cascade can have.
inline constexpr std::size_t kMostCascadedBands = 10;

/// y = ((x·b0 + x1·b1) + x2·b2) - y1·a1 - y2·a2, from left to right, every step rounded.
struct EQRow {
    float b0, b1, b2, a1, a2;
    float unused[3]; ///< so that four numbers at a time can be read
};

/// What a filter remembers of one channel's last two samples: the input oldest first, the output
/// newest first.
struct EQHistory {
    float x2, x1, y1, y2;
};

/// The histories of one channel, one for each band, active or not.
struct EQChannelHistory {
    EQHistory bands[kMostCascadedBands];
};

/// The bands that do something, in the order in which the signal passes them.
struct EQCascade {
    std::size_t count = 0;
    std::size_t band[kMostCascadedBands]{}; ///< whose history the filter continues
    EQRow row[kMostCascadedBands]{};
};

/// Filters `count` samples in place, through one band after the other. Only the histories of the
/// cascade's bands are read and written.
struct EQKernels {
    void (*mono)(float* samples, std::size_t count, const EQCascade& cascade,
                 EQChannelHistory& history) noexcept;
    /// The same for two channels whose samples do not overlap.
    void (*pair)(float* left, float* right, std::size_t count, const EQCascade& cascade,
                 EQChannelHistory& leftHistory, EQChannelHistory& rightHistory) noexcept;
};

} // namespace orvanta
