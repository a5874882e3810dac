#include "platform/embedded/sounds/Combinations.h"

#include "platform/embedded/sounds/Envelope.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvanta::embedded {

namespace {

class Scaled final : public SoundSource {
public:
    Scaled(std::unique_ptr<SoundSource> source, float gain)
        : source_(std::move(source)), gain_(gain) {}

    [[nodiscard]] std::uint32_t channels() const noexcept override { return source_->channels(); }

    void render(std::span<float> interleaved, double sampleRate) noexcept override {
        source_->render(interleaved, sampleRate);
        for (float& sample : interleaved)
            sample *= gain_;
    }

private:
    const std::unique_ptr<SoundSource> source_;
    const float gain_;
};

class Mixture final : public SoundSource {
public:
    explicit Mixture(std::vector<std::unique_ptr<SoundSource>> parts) : parts_(std::move(parts)) {
        std::uint32_t most = 0;
        for (const auto& part : parts_)
            most = std::max(most, part->channels());
        room_.resize(kFramesAtOnce * most);
    }

    [[nodiscard]] std::uint32_t channels() const noexcept override { return 2; }

    void render(std::span<float> interleaved, double sampleRate) noexcept override {
        std::ranges::fill(interleaved, 0.0F);
        const std::size_t frames = interleaved.size() / 2;
        for (std::size_t done = 0; done < frames; done += kFramesAtOnce) {
            const std::size_t count = std::min(kFramesAtOnce, frames - done);
            for (const auto& part : parts_)
                add(*part, interleaved.subspan(done * 2, count * 2), sampleRate);
        }
    }

private:
    /// What is rendered at once into the room made for it beforehand.
    static constexpr std::size_t kFramesAtOnce = 256;

    void add(SoundSource& part, std::span<float> stereo, double sampleRate) noexcept {
        const std::size_t channels = part.channels();
        const std::size_t right = channels == 1 ? 0 : 1;
        const auto played = std::span(room_).first(stereo.size() / 2 * channels);
        part.render(played, sampleRate);
        for (std::size_t frame = 0; frame < stereo.size() / 2; ++frame) {
            stereo[frame * 2] += played[frame * channels];
            stereo[frame * 2 + 1] += played[frame * channels + right];
        }
    }

    std::vector<std::unique_ptr<SoundSource>> parts_;
    std::vector<float> room_;
};

class InTurns final : public SoundSource {
public:
    InTurns(std::unique_ptr<SoundSource> source, Turns turns)
        : source_(std::move(source)), turns_(turns) {}

    [[nodiscard]] std::uint32_t channels() const noexcept override { return source_->channels(); }

    void render(std::span<float> interleaved, double sampleRate) noexcept override {
        const std::size_t channels = source_->channels();
        const float smoothing = decayPerSample(kFadeSeconds, sampleRate);
        for (std::size_t index = 0; index < interleaved.size(); index += channels) {
            renderFrame(interleaved.subspan(index, channels), sampleRate, smoothing);
            elapsed_ += 1.0 / sampleRate;
        }
    }

private:
    static constexpr double kFadeSeconds = 0.01;
    /// Far below hearing.
    static constexpr float kInaudible = 1e-5F;

    void renderFrame(std::span<float> frame, double sampleRate, float smoothing) noexcept {
        const float target = turns_.isOn(elapsed_) ? 1.0F : 0.0F;
        level_ = target + smoothing * (level_ - target);
        if (level_ < kInaudible) {
            level_ = 0;
            std::ranges::fill(frame, 0.0F);
            return;
        }
        source_->render(frame, sampleRate);
        for (float& sample : frame)
            sample *= level_;
    }

    const std::unique_ptr<SoundSource> source_;
    const Turns turns_;
    double elapsed_ = 0;
    float level_ = 0;
};

} // namespace

bool Turns::isOn(double second) const noexcept {
    if (second < before)
        return false;
    return off <= 0 || std::fmod(second - before, on + off) < on;
}

Sound scaled(const Sound& sound, float gain) {
    if (!sound)
        return {};
    return [=] {
        return std::make_unique<Scaled>(sound(), gain);
    };
}

Sound mixtureOf(std::vector<Sound> parts) {
    std::erase_if(parts, [](const Sound& part) { return !part; });
    return [parts = std::move(parts)] {
        std::vector<std::unique_ptr<SoundSource>> sources;
        for (const Sound& part : parts)
            sources.push_back(part());
        return std::make_unique<Mixture>(std::move(sources));
    };
}

Sound inTurns(const Sound& sound, Turns turns) {
    if (!sound)
        return {};
    return [=] {
        return std::make_unique<InTurns>(sound(), turns);
    };
}

} // namespace orvanta::embedded
