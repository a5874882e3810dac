#include "platform/embedded/sounds/GameLike.h"

#include "platform/embedded/sounds/Instruments.h"

#include <algorithm>
#include <cmath>

namespace orvanta::embedded {

namespace {

/// Noise without its highs: the lower `hertz`, the farther away it sounds.
class Rumble {
public:
    explicit Rumble(std::uint32_t seed) : random_(seed) {}

    float next(double hertz, double sampleRate) noexcept {
        const auto share = static_cast<float>(std::min(1.0, 6.3 * hertz / sampleRate));
        first_ += share * (random_.bipolar() - first_);
        second_ += share * (first_ - second_);
        // A filter takes the more of the noise the lower it lies.
        return second_ / std::sqrt(share);
    }

private:
    RandomSequence random_;
    float first_ = 0;
    float second_ = 0;
};

class Island final : public SoundSource {
public:
    explicit Island(std::uint32_t seed)
        : random_(seed), wind_(seed + 1), surf_(seed + 2), storm_(seed + 3), steps_(seed) {}

    [[nodiscard]] std::uint32_t channels() const noexcept override { return 2; }

    void render(std::span<float> interleaved, double sampleRate) noexcept override {
        steps_.setSampleRate(sampleRate);
        chime_.setSampleRate(sampleRate);
        thunder_.setSampleRate(sampleRate);
        spell_.setSampleRate(sampleRate);
        for (std::size_t index = 0; index + 1 < interleaved.size(); index += 2) {
            untilBeat_ -= kBeatsPerSecond / sampleRate;
            if (untilBeat_ <= 0) {
                untilBeat_ += 1;
                playBeat();
            }
            renderFrame(interleaved[index], interleaved[index + 1], sampleRate);
        }
    }

private:
    static constexpr double kBeatsPerSecond = 4;
    static constexpr double kLowestNote = 74;

    void playBeat() noexcept {
        beat_ = (beat_ + 1) % 64;
        // Two paces a second, with a rest after every eight seconds.
        if (beat_ % 2 == 0 && beat_ % 32 < 24)
            steps_.snare(0.16F + 0.1F * random_.unipolar());
        if (notesLeft_ > 0)
            chime_.strike(kLowestNote + 4 * --notesLeft_, 0.5F);
        else if (random_.below(24) == 0)
            notesLeft_ = 3;
        else if (random_.below(40) == 0)
            castSpell();
        else if (random_.below(60) == 0)
            thunder_.strike(0.8F + 0.2F * random_.unipolar());
    }

    void castSpell() noexcept {
        spell_.strike(0.5F);
        spellHertz_ = 300.0 + random_.below(300);
        position_ = random_.unipolar();
    }

    void renderFrame(float& left, float& right, double sampleRate) noexcept {
        const float swell = 0.6F + 0.4F * swell_.next(0.11 / sampleRate);
        const float tide = 0.5F + 0.5F * tide_.next(0.07 / sampleRate);
        const float wind =
            0.28F * swell * wind_.next(350.0 + 500.0 * static_cast<double>(swell), sampleRate);
        const float surf = 0.22F * tide * surf_.next(1800, sampleRate);
        const float drone = 0.07F * (low_.next(55.0 / sampleRate) + fifth_.next(82.5 / sampleRate));
        const float thunder = 1.6F * thunder_.next() * storm_.next(120, sampleRate);
        const float middle = drone + steps_.next() + 0.5F * chime_.next() + thunder;
        spellHertz_ *= 1 + 1.2 / sampleRate;
        const float spell = spell_.next() * spellTone_.next(spellHertz_ / sampleRate);
        left = std::tanh(middle + wind + 0.5F * surf + (1 - position_) * spell);
        right = std::tanh(middle + 0.6F * wind + surf + position_ * spell);
    }

    RandomSequence random_;
    Rumble wind_;
    Rumble surf_;
    Rumble storm_;
    Drums steps_;
    Pluck chime_{0.3, 0.3F, 0.2F};
    StruckEnvelope thunder_{0.9};
    StruckEnvelope spell_{0.35};
    Oscillator swell_;
    Oscillator tide_;
    Oscillator low_;
    Oscillator fifth_;
    Oscillator spellTone_;
    double spellHertz_ = 300;
    double untilBeat_ = 0;
    float position_ = 0.5F;
    int notesLeft_ = 0;
    int beat_ = 0;
};

} // namespace

Sound gameLike(std::uint32_t seed) {
    return [=] {
        return std::make_unique<Island>(seed);
    };
}

} // namespace orvanta::embedded
