#include "platform/embedded/sounds/SpeechLike.h"

#include "platform/embedded/sounds/Envelope.h"
#include "platform/embedded/sounds/FormantFilter.h"
#include "platform/embedded/sounds/Oscillator.h"
#include "platform/embedded/sounds/RandomSequence.h"

namespace orvanta::embedded {

namespace {

constexpr std::array<Formants, 6> kVowels{{
    {730, 1090, 2440}, // a
    {530, 1840, 2480}, // e
    {300, 2290, 3010}, // i
    {570, 840, 2410},  // o
    {300, 870, 2240},  // u
    {500, 1500, 2500}, // the neutral one
}};

/// One unit of speech or, without loudness, of rest.
struct Syllable {
    double seconds = 0;
    double hissSeconds = 0;
    float loudness = 0;
    double pitchHertz = 0;
    Formants vowel{};
};

/// Decides what is said.
class Speaker {
public:
    explicit Speaker(std::uint32_t seed) : random_(seed), pitchHertz_(95.0 + random_.below(120)) {}

    Syllable next() noexcept {
        if (left_ == 0) {
            left_ = spoken_ = 4 + random_.below(7);
            return {.seconds = 0.25 + 0.5 * random()};
        }
        const double progress = 1.0 - static_cast<double>(left_--) / spoken_;
        Syllable syllable;
        syllable.seconds = 0.12 + 0.16 * random();
        syllable.hissSeconds = random_.below(3) == 0 ? 0.0 : 0.03 + 0.05 * random();
        syllable.loudness = 0.6F + 0.4F * random_.unipolar();
        syllable.pitchHertz = pitchHertz_ * (1.12 - 0.27 * progress + 0.08 * (random() - 0.5));
        syllable.vowel = kVowels[random_.below(kVowels.size())];
        return syllable;
    }

private:
    double random() noexcept { return static_cast<double>(random_.unipolar()); }

    RandomSequence random_;
    double pitchHertz_;
    std::uint32_t left_ = 6;
    std::uint32_t spoken_ = 6;
};

/// Says it.
class Talker final : public SoundSource {
public:
    explicit Talker(std::uint32_t seed) : speaker_(seed), random_(seed) {}

    [[nodiscard]] std::uint32_t channels() const noexcept override { return 1; }

    void render(std::span<float> interleaved, double sampleRate) noexcept override {
        const float smoothing = decayPerSample(0.012, sampleRate);
        for (float& sample : interleaved) {
            if (elapsed_ >= syllable_.seconds) {
                syllable_ = speaker_.next();
                elapsed_ = 0;
            }
            if (untilMove_-- == 0)
                moveFormants(sampleRate);
            sample = renderSample(sampleRate, smoothing);
            elapsed_ += 1.0 / sampleRate;
        }
    }

private:
    static constexpr int kSamplesPerMove = 32;

    void moveFormants(double sampleRate) noexcept {
        untilMove_ = kSamplesPerMove - 1;
        const double kept = std::exp(-kSamplesPerMove / (0.03 * sampleRate));
        if (syllable_.loudness > 0) {
            for (std::size_t index = 0; index < formants_.size(); ++index) {
                formants_[index] =
                    syllable_.vowel[index] + kept * (formants_[index] - syllable_.vowel[index]);
            }
            pitchHertz_ = syllable_.pitchHertz + kept * (pitchHertz_ - syllable_.pitchHertz);
        }
        filter_.set(formants_, sampleRate);
    }

    float renderSample(double sampleRate, float smoothing) noexcept {
        const bool hisses = elapsed_ < syllable_.hissSeconds;
        const bool voiced = !hisses && elapsed_ < syllable_.seconds - 0.03;
        const float noise = random_.bipolar();
        const float brightNoise = noise - lastNoise_;
        lastNoise_ = noise;
        approach(voiceLevel_, voiced ? syllable_.loudness : 0.0F, smoothing);
        approach(hissLevel_, hisses ? syllable_.loudness : 0.0F, smoothing);
        const float throat = glottis(sampleRate) + 0.02F * noise;
        const float vowel = filter_.process(voiceLevel_ * throat);
        return std::tanh(0.45F * vowel + 0.05F * hissLevel_ * brightNoise);
    }

    /// The flow through the vocal folds: open for part of a turn, and closing faster than opening.
    float glottis(double sampleRate) noexcept {
        folds_.move(pitchHertz_ / sampleRate);
        const double phase = folds_.phase();
        constexpr double kOpens = 0.4;
        constexpr double kCloses = 0.56;
        float flow = 0;
        if (phase < kOpens)
            flow = 0.5F - 0.5F * Oscillator::sine(0.25 + 0.5 * phase / kOpens);
        else if (phase < kCloses)
            flow = Oscillator::sine(0.25 + 0.25 * (phase - kOpens) / (kCloses - kOpens));
        const float change = flow - lastFlow_;
        lastFlow_ = flow;
        // Lips radiate the change of the flow, which grows with pitch and falls with the rate.
        return change * static_cast<float>(sampleRate / 3000.0);
    }

    static void approach(float& level, float target, float smoothing) noexcept {
        level = target + smoothing * (level - target);
        if (level < 1e-6F)
            level = 0;
    }

    Speaker speaker_;
    RandomSequence random_;
    FormantFilter filter_;
    Oscillator folds_;
    Syllable syllable_;
    Formants formants_ = kVowels.back();
    double pitchHertz_ = 120;
    double elapsed_ = 0;
    float voiceLevel_ = 0;
    float hissLevel_ = 0;
    float lastNoise_ = 0;
    float lastFlow_ = 0;
    int untilMove_ = 0;
};

} // namespace

Sound speechLike(std::uint32_t seed) {
    return [=] {
        return std::make_unique<Talker>(seed);
    };
}

} // namespace orvanta::embedded
