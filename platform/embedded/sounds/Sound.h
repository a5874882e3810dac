#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

namespace orvanta::embedded {

/// Produces the sound of one program. Runs inside the cycle, so `render` neither allocates, locks
/// nor blocks.
class SoundSource {
public:
    SoundSource() = default;
    SoundSource(const SoundSource&) = delete;
    SoundSource& operator=(const SoundSource&) = delete;
    virtual ~SoundSource() = default;

    /// Constant over its life.
    [[nodiscard]] virtual std::uint32_t channels() const noexcept = 0;

    /// Fills the whole span with its next frames, channels interleaved. The rate in Hz may change
    /// from call to call, when the program moves to another device.
    virtual void render(std::span<float> interleaved, double sampleRate) noexcept = 0;
};

/// Makes a source that starts from its beginning; the same Sound always makes the same sound. An
/// empty one is silence.
using Sound = std::function<std::unique_ptr<SoundSource>()>;

} // namespace orvanta::embedded
