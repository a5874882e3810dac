#include "platform/embedded/sounds/MusicLike.h"

#include "platform/embedded/sounds/Instruments.h"

namespace orvanta::embedded {

namespace {

constexpr int kStepsPerBar = 16;

/// A triad as half tones above the key's root.
struct Chord {
    int root;
    int third;
    int fifth;
};

constexpr Chord kMajorI{0, 4, 7};
constexpr Chord kMinorII{2, 5, 9};
constexpr Chord kMajorIV{5, 9, 12};
constexpr Chord kMajorV{7, 11, 14};
constexpr Chord kMinorVI{-3, 0, 4};

using Progression = std::array<Chord, 4>;

constexpr std::array<Progression, 4> kProgressions{{
    {kMajorI, kMajorV, kMinorVI, kMajorIV},
    {kMinorVI, kMajorIV, kMajorI, kMajorV},
    {kMajorI, kMinorVI, kMinorII, kMajorV},
    {kMajorI, kMajorIV, kMinorVI, kMajorV},
}};

constexpr std::array<int, 6> kPentatonic{0, 2, 4, 7, 9, 12};

class Band final : public SoundSource {
public:
    explicit Band(std::uint32_t seed)
        : random_(seed),
          drums_(seed),
          key_(57.0 + random_.below(7)),
          stepsPerSecond_((84.0 + random_.below(32)) * 4.0 / 60.0),
          progression_(kProgressions[random_.below(kProgressions.size())]) {}

    [[nodiscard]] std::uint32_t channels() const noexcept override { return 2; }

    void render(std::span<float> interleaved, double sampleRate) noexcept override {
        pad_.setSampleRate(sampleRate);
        bass_.setSampleRate(sampleRate);
        tune_.setSampleRate(sampleRate);
        drums_.setSampleRate(sampleRate);
        const double step = stepsPerSecond_ / sampleRate;
        for (std::size_t index = 0; index + 1 < interleaved.size(); index += 2) {
            if (untilStep_ <= 0) {
                playStep();
                untilStep_ += 1;
            }
            untilStep_ -= step;
            renderFrame(interleaved[index], interleaved[index + 1]);
        }
    }

private:
    void renderFrame(float& left, float& right) noexcept {
        const Pad::Frame pad = pad_.next();
        const float middle = 0.38F * bass_.next() + 0.5F * drums_.next();
        const float tune = 0.22F * tune_.next();
        left = std::tanh(middle + 0.045F * pad.left + (1 - tunePosition_) * tune);
        right = std::tanh(middle + 0.045F * pad.right + tunePosition_ * tune);
    }

    void playStep() noexcept {
        const int inBar = step_ % kStepsPerBar;
        const Chord& chord =
            progression_[static_cast<std::size_t>(step_ / kStepsPerBar) % progression_.size()];
        if (inBar == 0)
            pad_.play({key_ + chord.root, key_ + chord.third, key_ + chord.fifth});
        playDrums(inBar);
        playBass(inBar, chord);
        playTune(inBar, chord);
        step_ = (step_ + 1) % (kStepsPerBar * static_cast<int>(progression_.size()) * 4);
    }

    void playDrums(int inBar) noexcept {
        if (inBar == 0 || inBar == 8 || (inBar == 10 && random_.unipolar() < 0.4F))
            drums_.kick(0.9F);
        if (inBar == 4 || inBar == 12)
            drums_.snare(0.6F);
        if (inBar % 2 == 0)
            drums_.hat(inBar % 4 == 2 ? 0.3F : 0.18F);
        else if (random_.unipolar() < 0.15F)
            drums_.hat(0.12F);
    }

    void playBass(int inBar, const Chord& chord) noexcept {
        const double root = key_ + chord.root - 24;
        if (inBar == 0 || inBar == 6 || inBar == 8)
            bass_.strike(root, 0.9F);
        else if (inBar == 14)
            bass_.strike(root + 7, 0.7F);
    }

    void playTune(int inBar, const Chord& chord) noexcept {
        const bool onBeat = inBar % 4 == 0;
        if (inBar % 2 != 0 || random_.unipolar() > (onBeat ? 0.75F : 0.4F))
            return;
        // On the beat a note of the chord, between the beats any of the scale.
        const std::array<int, 3> tones{chord.root, chord.third, chord.fifth};
        const int above =
            onBeat ? tones[random_.below(3)] : kPentatonic[random_.below(kPentatonic.size())];
        tune_.strike(key_ + 12 + above, 0.5F + 0.4F * random_.unipolar());
        tunePosition_ = 0.3F + 0.4F * random_.unipolar();
    }

    RandomSequence random_;
    Pad pad_;
    Pluck bass_{0.35, 0.35F, 0.1F};
    Pluck tune_{0.25, 0.4F, 0.25F};
    Drums drums_;
    double key_;
    double stepsPerSecond_;
    Progression progression_;
    float tunePosition_ = 0.5F;
    double untilStep_ = 0;
    int step_ = 0;
};

} // namespace

Sound musicLike(std::uint32_t seed) {
    return [=] {
        return std::make_unique<Band>(seed);
    };
}

} // namespace orvanta::embedded
