#pragma once

#include "platform/embedded/sounds/Sound.h"

#include <memory>

namespace orvanta::embedded {

/// One performance of a program's sound. Starting the program anew makes a new one.
class Voice {
public:
    explicit Voice(const Sound& sound) : source_(sound ? sound() : nullptr) {}

    [[nodiscard]] std::uint32_t channels() const noexcept {
        return source_ ? source_->channels() : 0;
    }

    void render(std::span<float> interleaved, double sampleRate) noexcept {
        if (source_)
            source_->render(interleaved, sampleRate);
    }

private:
    std::unique_ptr<SoundSource> source_;
};

} // namespace orvanta::embedded
