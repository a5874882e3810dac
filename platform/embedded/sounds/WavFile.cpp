#include "platform/embedded/sounds/WavFile.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>

namespace orvanta::embedded {

namespace {

struct Recording {
    std::vector<float> samples;
    std::uint32_t channels = 0;
    double sampleRate = 0;

    [[nodiscard]] std::size_t frames() const noexcept { return samples.size() / channels; }
};

std::shared_ptr<const Recording> readRecording(const std::string& path) {
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, decltype(&sf_close)> file(sf_open(path.c_str(), SFM_READ, &info),
                                                             &sf_close);
    if (!file || info.channels <= 0 || info.samplerate <= 0 || info.frames <= 0)
        return nullptr;
    auto recording = std::make_shared<Recording>();
    recording->channels = static_cast<std::uint32_t>(info.channels);
    recording->sampleRate = info.samplerate;
    const std::size_t samples =
        static_cast<std::size_t>(info.frames) * static_cast<std::size_t>(info.channels);
    recording->samples.resize(samples);
    const sf_count_t frames = sf_readf_float(file.get(), recording->samples.data(), info.frames);
    recording->samples.resize(static_cast<std::size_t>(std::max<sf_count_t>(frames, 0)) *
                              recording->channels);
    return recording->samples.empty() ? nullptr : recording;
}

/// The cubic between `second` and `third` at `position` from 0 to 1.
float catmullRom(float first, float second, float third, float fourth, float position) noexcept {
    const float slope = third - first;
    const float bend = 2 * first - 5 * second + 4 * third - fourth;
    const float twist = 3 * (second - third) + fourth - first;
    return second + 0.5F * position * (slope + position * (bend + position * twist));
}

class Player final : public SoundSource {
public:
    Player(std::shared_ptr<const Recording> recording, AtEnd atEnd)
        : recording_(std::move(recording)), repeats_(atEnd == AtEnd::startAgain) {}

    [[nodiscard]] std::uint32_t channels() const noexcept override { return recording_->channels; }

    void render(std::span<float> interleaved, double sampleRate) noexcept override {
        const double step = recording_->sampleRate / sampleRate;
        const std::size_t channels = recording_->channels;
        for (std::size_t index = 0; index + channels <= interleaved.size(); index += channels) {
            renderFrame(interleaved.subspan(index, channels));
            advance(step);
        }
    }

private:
    void renderFrame(std::span<float> frame) const noexcept {
        const auto part = static_cast<float>(fraction_);
        for (std::size_t channel = 0; channel < frame.size(); ++channel) {
            const float here = sample(0, channel);
            frame[channel] = part == 0.0F
                                 ? here
                                 : catmullRom(sample(-1, channel), here, sample(1, channel),
                                              sample(2, channel), part);
        }
    }

    [[nodiscard]] float sample(std::int64_t offset, std::size_t channel) const noexcept {
        const auto frames = static_cast<std::int64_t>(recording_->frames());
        std::int64_t frame = static_cast<std::int64_t>(position_) + offset;
        if (repeats_)
            frame = (frame + frames) % frames;
        if (frame < 0 || frame >= frames)
            return 0;
        return recording_
            ->samples[static_cast<std::size_t>(frame) * recording_->channels + channel];
    }

    void advance(double step) noexcept {
        if (!repeats_ && position_ >= recording_->frames())
            return;
        fraction_ += step;
        const double whole = std::floor(fraction_);
        fraction_ -= whole;
        position_ += static_cast<std::size_t>(whole);
        if (repeats_)
            position_ %= recording_->frames();
    }

    std::shared_ptr<const Recording> recording_;
    bool repeats_;
    std::size_t position_ = 0;
    double fraction_ = 0;
};

} // namespace

Sound wavFile(const std::string& path, AtEnd atEnd) {
    auto recording = readRecording(path);
    if (!recording)
        return {};
    return [=] {
        return std::make_unique<Player>(recording, atEnd);
    };
}

} // namespace orvanta::embedded
