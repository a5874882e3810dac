#include "platform/embedded/sounds/BasicSounds.h"

#include "platform/embedded/sounds/Oscillator.h"
#include "platform/embedded/sounds/RandomSequence.h"

#include <algorithm>
#include <utility>

namespace orvanta::embedded {

namespace {

class Constant final : public SoundSource {
public:
    explicit Constant(std::vector<float> values) : values_(std::move(values)) {}

    [[nodiscard]] std::uint32_t channels() const noexcept override {
        return static_cast<std::uint32_t>(values_.size());
    }

    void render(std::span<float> interleaved, double) noexcept override {
        for (std::size_t index = 0; index < interleaved.size(); ++index)
            interleaved[index] = values_[index % values_.size()];
    }

private:
    std::vector<float> values_;
};

class Tone final : public SoundSource {
public:
    Tone(std::vector<double> hertz, float amplitude)
        : hertz_(std::move(hertz)), oscillators_(hertz_.size()), amplitude_(amplitude) {}

    [[nodiscard]] std::uint32_t channels() const noexcept override {
        return static_cast<std::uint32_t>(hertz_.size());
    }

    void render(std::span<float> interleaved, double sampleRate) noexcept override {
        const std::size_t count = hertz_.size();
        for (std::size_t channel = 0; channel < count; ++channel) {
            const double step = hertz_[channel] / sampleRate;
            for (std::size_t index = channel; index < interleaved.size(); index += count)
                interleaved[index] = amplitude_ * oscillators_[channel].next(step);
        }
    }

private:
    std::vector<double> hertz_;
    std::vector<Oscillator> oscillators_;
    float amplitude_;
};

class Noise final : public SoundSource {
public:
    Noise(std::uint32_t seed, float amplitude) : random_(seed), amplitude_(amplitude) {}

    [[nodiscard]] std::uint32_t channels() const noexcept override { return 1; }

    void render(std::span<float> interleaved, double) noexcept override {
        for (float& sample : interleaved)
            sample = amplitude_ * random_.bipolar();
    }

private:
    RandomSequence random_;
    float amplitude_;
};

class Bursts final : public SoundSource {
public:
    Bursts(double hertz, double on, double off, float amplitude)
        : hertz_(hertz),
          on_(std::max(on, 0.0)),
          period_(on_ + std::max(off, 0.0)),
          amplitude_(amplitude) {}

    [[nodiscard]] std::uint32_t channels() const noexcept override { return 1; }

    void render(std::span<float> interleaved, double sampleRate) noexcept override {
        const auto frames = [=](double seconds) {
            return static_cast<std::uint64_t>(std::llround(seconds * sampleRate));
        };
        const std::uint64_t on = frames(on_);
        const std::uint64_t period = std::max<std::uint64_t>(frames(period_), 1);
        for (float& sample : interleaved) {
            if (frame_ >= period)
                frame_ = 0;
            const double turns = hertz_ / sampleRate * static_cast<double>(frame_);
            sample = frame_ < on ? amplitude_ * Oscillator::sine(turns) : 0.0F;
            ++frame_;
        }
    }

private:
    double hertz_;
    double on_;
    double period_;
    float amplitude_;
    std::uint64_t frame_ = 0;
};

class Counting final : public SoundSource {
public:
    explicit Counting(float step) : step_(step) {}

    [[nodiscard]] std::uint32_t channels() const noexcept override { return 1; }

    void render(std::span<float> interleaved, double) noexcept override {
        for (float& sample : interleaved)
            sample = static_cast<float>(next_++) * step_;
    }

private:
    float step_;
    std::uint64_t next_ = 0;
};

class Samples final : public SoundSource {
public:
    Samples(std::shared_ptr<const std::vector<float>> frames, std::uint32_t channels, AtEnd atEnd)
        : samples_(std::move(frames)), channels_(channels), atEnd_(atEnd) {}

    [[nodiscard]] std::uint32_t channels() const noexcept override { return channels_; }

    void render(std::span<float> interleaved, double) noexcept override {
        for (float& sample : interleaved) {
            if (position_ == samples_->size() && atEnd_ == AtEnd::startAgain)
                position_ = 0;
            sample = position_ < samples_->size() ? (*samples_)[position_++] : 0.0F;
        }
    }

private:
    std::shared_ptr<const std::vector<float>> samples_;
    std::uint32_t channels_;
    AtEnd atEnd_;
    std::size_t position_ = 0;
};

} // namespace

Sound silence() {
    return constant(0.0F);
}

Sound constant(float value) {
    return constant(std::vector<float>{value});
}

Sound constant(std::vector<float> channelValues) {
    if (channelValues.empty())
        channelValues.push_back(0.0F);
    return [values = std::move(channelValues)] {
        return std::make_unique<Constant>(values);
    };
}

Sound tone(double hertz, float amplitude) {
    return [=] {
        return std::make_unique<Tone>(std::vector<double>{hertz}, amplitude);
    };
}

Sound stereoTone(double leftHertz, double rightHertz, float amplitude) {
    return [=] {
        return std::make_unique<Tone>(std::vector<double>{leftHertz, rightHertz}, amplitude);
    };
}

Sound noise(std::uint32_t seed, float amplitude) {
    return [=] {
        return std::make_unique<Noise>(seed, amplitude);
    };
}

Sound bursts(double hertz, double on, double off, float amplitude) {
    return [=] {
        return std::make_unique<Bursts>(hertz, on, off, amplitude);
    };
}

Sound counting(float step) {
    return [=] {
        return std::make_unique<Counting>(step);
    };
}

Sound samples(std::vector<float> interleaved, std::uint32_t channels, AtEnd atEnd) {
    const std::uint32_t width = std::max<std::uint32_t>(channels, 1);
    interleaved.resize(interleaved.size() / width * width);
    auto shared = std::make_shared<const std::vector<float>>(std::move(interleaved));
    return [=] {
        return std::make_unique<Samples>(shared, width, atEnd);
    };
}

} // namespace orvanta::embedded
