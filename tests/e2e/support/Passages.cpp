#include "tests/e2e/support/Passages.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ostream>

namespace orvanta::test {

namespace {

/// Above what a multiplication and an addition in float lose at these levels, below the 16-bit
/// step of 3e-5.
constexpr float tolerance = 2e-6F;

/// Samples that must agree before a place in the signal is taken for found.
constexpr std::size_t confirmation = 3;

/// Three neighbouring samples as one number, each rounded to a quarter of the 16-bit step.
std::uint64_t keyOf(const float* samples, float factor) {
    std::uint64_t key = 0;
    for (std::size_t index = 0; index < confirmation; ++index) {
        const auto step =
            static_cast<std::int64_t>(std::llround(samples[index] / factor * 131072.0F));
        key = (key << 21U) | (static_cast<std::uint64_t>(step) & 0x1fffffU);
    }
    return key;
}

constexpr std::array soundingMaterials = {Material::gained, Material::leaked, Material::doubled};

bool sounds(Material material) {
    return material != Material::silence && material != Material::foreign;
}

void append(std::vector<Passage>& passages, std::size_t index, Material material,
            std::int64_t position) {
    if (!passages.empty()) {
        Passage& last = passages.back();
        const bool runsOn =
            !sounds(material) ||
            last.signalPosition + static_cast<std::int64_t>(last.frames) == position;
        if (last.material == material && runsOn) {
            ++last.frames;
            return;
        }
    }
    passages.push_back({material, index, 1, position});
}

} // namespace

PassageReader::PassageReader(std::vector<float> signal, float gain)
    : signal_(std::move(signal)), gain_(gain) {
    for (std::size_t position = 0; position + confirmation <= signal_.size(); ++position)
        places_.push_back({keyOf(&signal_[position], 1.0F), position});
    std::ranges::sort(places_, {}, &Place::key);
}

float PassageReader::factor(Material material) const {
    switch (material) {
    case Material::gained:
        return gain_;
    case Material::leaked:
        return 1.0F;
    case Material::doubled:
        return 1.0F + gain_;
    default:
        return 0.0F;
    }
}

bool PassageReader::matches(float sample, Material material, std::int64_t position) const {
    if (position < 0 || position >= static_cast<std::int64_t>(signal_.size()))
        return false;
    const float expected = signal_[static_cast<std::size_t>(position)] * factor(material);
    return std::abs(sample - expected) <= tolerance;
}

bool PassageReader::runsFrom(std::span<const float> recording, std::size_t index,
                             Found found) const {
    const std::size_t checked = std::min(confirmation, recording.size() - index);
    for (std::size_t ahead = 0; ahead < checked; ++ahead)
        if (!matches(recording[index + ahead], found.material,
                     found.position + static_cast<std::int64_t>(ahead)))
            return false;
    return true;
}

PassageReader::Found PassageReader::lookUp(std::span<const float> recording,
                                           std::size_t index) const {
    if (index + confirmation > recording.size())
        return {};
    for (const Material material : soundingMaterials) {
        const std::uint64_t key = keyOf(&recording[index], factor(material));
        const auto place = std::ranges::lower_bound(places_, key, {}, &Place::key);
        if (place == places_.end() || place->key != key)
            continue;
        const Found found = {material, static_cast<std::int64_t>(place->position)};
        if (runsFrom(recording, index, found))
            return found;
    }
    return {};
}

PassageReader::Found PassageReader::identify(std::span<const float> recording, std::size_t index,
                                             const std::vector<Passage>& soFar) const {
    const auto lastSounding = std::ranges::find_if(
        soFar.rbegin(), soFar.rend(), [](const Passage& p) { return sounds(p.material); });
    if (lastSounding != soFar.rend() && &*lastSounding == &soFar.back()) {
        const std::int64_t next =
            lastSounding->signalPosition + static_cast<std::int64_t>(lastSounding->frames);
        if (matches(recording[index], lastSounding->material, next))
            return {lastSounding->material, next};
    }
    if (recording[index] == 0.0F)
        return {Material::silence, 0};
    return lookUp(recording, index);
}

std::vector<Passage> PassageReader::read(std::span<const float> recording) const {
    std::vector<Passage> passages;
    for (std::size_t index = 0; index < recording.size(); ++index) {
        const Found found = identify(recording, index, passages);
        append(passages, index, found.material, found.position);
    }
    return passages;
}

PassageCounts count(std::span<const Passage> passages) {
    PassageCounts counts;
    const Passage* before = nullptr;
    std::size_t silenceSince = 0;
    for (const Passage& passage : passages) {
        switch (passage.material) {
        case Material::silence:
            counts.silent += passage.frames;
            silenceSince += passage.frames;
            continue;
        case Material::gained:
            counts.gained += passage.frames;
            break;
        case Material::leaked:
            counts.leaked += passage.frames;
            break;
        case Material::doubled:
            counts.doubled += passage.frames;
            break;
        case Material::foreign:
            counts.foreign += passage.frames;
            break;
        }
        if (before != nullptr)
            counts.longestGap = std::max(counts.longestGap, silenceSince);
        if (before != nullptr && sounds(passage.material) && sounds(before->material)) {
            const std::int64_t jump = passage.signalPosition - before->signalPosition -
                                      static_cast<std::int64_t>(before->frames);
            (jump > 0 ? counts.lost : counts.repeated) += static_cast<std::size_t>(std::abs(jump));
        }
        silenceSince = 0;
        before = &passage;
    }
    return counts;
}

std::ostream& operator<<(std::ostream& stream, const Passage& passage) {
    constexpr std::array names = {"silence", "gained", "leaked", "doubled", "foreign"};
    return stream << "[" << passage.start << " +" << passage.frames << " "
                  << names[static_cast<std::size_t>(passage.material)] << " @"
                  << passage.signalPosition << "]";
}

std::ostream& operator<<(std::ostream& stream, const PassageCounts& counts) {
    return stream << "gained " << counts.gained << ", leaked " << counts.leaked << ", doubled "
                  << counts.doubled << ", foreign " << counts.foreign << ", silent "
                  << counts.silent << ", longest gap " << counts.longestGap << ", lost "
                  << counts.lost << ", repeated " << counts.repeated;
}

} // namespace orvanta::test
