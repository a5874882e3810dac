#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <span>
#include <vector>

namespace orvanta::test {

/// What a stretch of a recording is made of.
enum class Material {
    silence,
    gained,  ///< the signal times the tap's gain
    leaked,  ///< the signal as the program plays it, past the tap
    doubled, ///< both at once
    foreign, ///< anything else
};

/// A stretch of one material in which the signal runs on without a jump.
struct Passage {
    Material material = Material::silence;
    std::size_t start = 0;
    std::size_t frames = 0;
    /// Place in the signal of the first frame; of no meaning in silence and foreign material.
    std::int64_t signalPosition = 0;
};

/// Reads a recording sample by sample against a known signal and a gain that is neither 0 nor 1.
class PassageReader {
public:
    PassageReader(std::vector<float> signal, float gain);

    [[nodiscard]] std::vector<Passage> read(std::span<const float> recording) const;

private:
    struct Place {
        std::uint64_t key = 0;
        std::size_t position = 0;
    };

    struct Found {
        Material material = Material::foreign;
        std::int64_t position = 0;
    };

    [[nodiscard]] bool matches(float sample, Material material, std::int64_t position) const;
    [[nodiscard]] bool runsFrom(std::span<const float> recording, std::size_t index,
                                Found found) const;
    [[nodiscard]] Found identify(std::span<const float> recording, std::size_t index,
                                 const std::vector<Passage>& soFar) const;
    [[nodiscard]] Found lookUp(std::span<const float> recording, std::size_t index) const;
    [[nodiscard]] float factor(Material material) const;

    std::vector<float> signal_;
    float gain_;
    std::vector<Place> places_;
};

/// The counts of a recording, in frames.
struct PassageCounts {
    std::size_t silent = 0;
    std::size_t gained = 0;
    std::size_t leaked = 0;
    std::size_t doubled = 0;
    std::size_t foreign = 0;
    /// Longest silence between two sounding passages; the lead-in and the tail do not count.
    std::size_t longestGap = 0;
    /// Samples of the signal that the recording skips, and that it brings a second time.
    std::size_t lost = 0;
    std::size_t repeated = 0;
};

PassageCounts count(std::span<const Passage> passages);

std::ostream& operator<<(std::ostream& stream, const Passage& passage);
std::ostream& operator<<(std::ostream& stream, const PassageCounts& counts);

} // namespace orvanta::test
