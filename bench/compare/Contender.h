#pragma once

#include "bench/compare/Signals.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::compare {

/// A processor in a frame that lets all of them be driven alike.
class Contender {
public:
    Contender() = default;
    Contender(const Contender&) = delete;
    Contender& operator=(const Contender&) = delete;
    virtual ~Contender() = default;

    /// Takes `frames` frames from `first` on into memory of its own, in the layout it likes best.
    /// Belongs to the time measured: a host does at least this.
    virtual void load(const Signal& signal, std::size_t first, std::size_t frames) noexcept = 0;
    virtual void run(std::size_t frames) noexcept = 0;

    /// Adds the frames of the last run to the channels' ends.
    virtual void appendResult(std::size_t frames, std::vector<float>& left,
                              std::vector<float>& right) const = 0;

    /// The loudness it has measured last, LUFS; none for what is no meter.
    [[nodiscard]] virtual std::optional<double> loudness() const { return std::nullopt; }
};

/// Makes a fresh one for blocks of so many frames at most.
using ContenderFactory = std::function<std::unique_ptr<Contender>(std::size_t maxFrames)>;

/// The whole signal through it, block by block.
[[nodiscard]] Signal processed(Contender& contender, const Signal& signal, std::size_t blockFrames);

} // namespace orvanta::compare
