#include "platform/embedded/sounds/Instruments.h"

namespace orvanta::embedded {

double noteHertz(double note) noexcept {
    return 440.0 * std::exp2((note - 69.0) / 12.0);
}

Pluck::Pluck(double decaySeconds, float secondHarmonic, float thirdHarmonic)
    : envelope_(decaySeconds), secondHarmonic_(secondHarmonic), thirdHarmonic_(thirdHarmonic) {}

void Pluck::setSampleRate(double sampleRate) noexcept {
    envelope_.setSampleRate(sampleRate);
    period_ = 1.0 / sampleRate;
}

void Pluck::strike(double note, float level) noexcept {
    hertz_ = noteHertz(note);
    envelope_.strike(level);
}

float Pluck::next() noexcept {
    const float level = envelope_.next();
    if (level == 0.0F)
        return 0;
    const double phase = oscillator_.phase();
    oscillator_.move(hertz_ * period_);
    // The overtones die faster than the fundamental, as those of a string do.
    const float tone =
        Oscillator::sine(phase) + level * (secondHarmonic_ * Oscillator::sine(2 * phase) +
                                           thirdHarmonic_ * Oscillator::sine(3 * phase));
    return level * tone;
}

void Pad::setSampleRate(double sampleRate) noexcept {
    period_ = 1.0 / sampleRate;
    glide_ = 1.0 - static_cast<double>(decayPerSample(0.03, sampleRate));
}

void Pad::play(const std::array<double, 3>& notes) noexcept {
    for (std::size_t index = 0; index < notes.size(); ++index)
        voices_[index].targetHertz = noteHertz(notes[index]);
}

Pad::Frame Pad::next() noexcept {
    constexpr double kDetune = 1.003;
    Frame frame;
    for (Voice& voice : voices_) {
        voice.hertz += glide_ * (voice.targetHertz - voice.hertz);
        const double step = voice.hertz * period_;
        frame.left += voice.left.next(step * kDetune);
        frame.right += voice.right.next(step / kDetune);
    }
    return frame;
}

void Drums::setSampleRate(double sampleRate) noexcept {
    for (StruckEnvelope* envelope :
         {&kickLoudness_, &kickPitch_, &snareRattle_, &snareSkin_, &hatLoudness_})
        envelope->setSampleRate(sampleRate);
    period_ = 1.0 / sampleRate;
}

void Drums::kick(float level) noexcept {
    kickLoudness_.strike(level);
    kickPitch_.strike(1);
    kickOscillator_.restart();
}

void Drums::snare(float level) noexcept {
    snareRattle_.strike(level);
    snareSkin_.strike(level);
}

void Drums::hat(float level) noexcept {
    hatLoudness_.strike(level);
}

float Drums::next() noexcept {
    const float noise = random_.bipolar();
    const float brightNoise = noise - lastNoise_;
    lastNoise_ = noise;
    const double kickHertz = 46.0 + 120.0 * static_cast<double>(kickPitch_.next());
    return kickLoudness_.next() * kickOscillator_.next(kickHertz * period_) +
           0.5F * snareRattle_.next() * noise +
           0.6F * snareSkin_.next() * snareOscillator_.next(185.0 * period_) +
           0.5F * hatLoudness_.next() * brightNoise;
}

} // namespace orvanta::embedded
