#pragma once

#include "bench/compare/Lv2World.h"

#include <lv2/options/options.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orvanta::compare {

/// What this host offers to a plug-in: numbers for URIs, and the promise that no block is longer
/// than the one told. No worker: none of the plug-ins we measure asks for one.
class Lv2Features {
public:
    /// `world` must outlive it.
    Lv2Features(Lv2World& world, double sampleRate, std::size_t maxBlock);
    Lv2Features(const Lv2Features&) = delete;
    Lv2Features& operator=(const Lv2Features&) = delete;

    /// Ends with null, as plug-ins want it.
    [[nodiscard]] const LV2_Feature* const* list() const noexcept { return list_.data(); }

    [[nodiscard]] bool offers(std::string_view uri) const noexcept;

private:
    LV2_URID_Map map_;
    LV2_URID_Unmap unmap_;
    float sampleRate_;
    std::int32_t shortestBlock_ = 1;
    std::int32_t longestBlock_;
    std::int32_t sequenceSize_;
    std::array<LV2_Options_Option, 6> options_;
    std::array<LV2_Feature, 4> features_;
    std::array<const LV2_Feature*, 5> list_;
};

} // namespace orvanta::compare
