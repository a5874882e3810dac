#pragma once

#include "platform/embedded/sounds/Envelope.h"
#include "platform/embedded/sounds/Oscillator.h"
#include "platform/embedded/sounds/RandomSequence.h"

#include <array>

/// The band that MusicLike conducts. Notes are half tones, 69 is the A of 440 Hz. Every instrument
/// is told the rate before it is asked for samples.
namespace orvanta::embedded {

double noteHertz(double note) noexcept;

/// A plucked string, or with a long decay a bass: a fundamental and some overtones.
class Pluck {
public:
    Pluck(double decaySeconds, float secondHarmonic, float thirdHarmonic);

    void setSampleRate(double sampleRate) noexcept;
    void strike(double note, float level) noexcept;
    float next() noexcept;

private:
    StruckEnvelope envelope_;
    Oscillator oscillator_;
    float secondHarmonic_;
    float thirdHarmonic_;
    double hertz_ = 0;
    double period_ = 0;
};

/// A soft chord of three notes that lies under everything, a little wider than mono.
class Pad {
public:
    void setSampleRate(double sampleRate) noexcept;
    void play(const std::array<double, 3>& notes) noexcept;

    struct Frame {
        float left = 0;
        float right = 0;
    };

    Frame next() noexcept;

private:
    struct Voice {
        Oscillator left;
        Oscillator right;
        double hertz = 220;
        double targetHertz = 220;
    };

    std::array<Voice, 3> voices_;
    double period_ = 0;
    double glide_ = 0;
};

/// Kick, snare and hat.
class Drums {
public:
    explicit Drums(std::uint32_t seed) : random_(seed) {}

    void setSampleRate(double sampleRate) noexcept;
    void kick(float level) noexcept;
    void snare(float level) noexcept;
    void hat(float level) noexcept;
    float next() noexcept;

private:
    RandomSequence random_;
    StruckEnvelope kickLoudness_{0.12};
    StruckEnvelope kickPitch_{0.03};
    StruckEnvelope snareRattle_{0.07};
    StruckEnvelope snareSkin_{0.05};
    StruckEnvelope hatLoudness_{0.025};
    Oscillator kickOscillator_;
    Oscillator snareOscillator_;
    float lastNoise_ = 0;
    double period_ = 0;
};

} // namespace orvanta::embedded
