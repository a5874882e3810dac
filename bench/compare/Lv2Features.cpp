#include "bench/compare/Lv2Features.h"

#include "bench/compare/AtomBuffer.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/parameters/parameters.h>

#include <algorithm>

namespace orvanta::compare {
namespace {

LV2_URID mapURI(LV2_URID_Map_Handle world, const char* uri) {
    return static_cast<Lv2World*>(world)->number(uri);
}

const char* unmapURI(LV2_URID_Unmap_Handle world, LV2_URID number) {
    return static_cast<const Lv2World*>(world)->uri(number);
}

} // namespace

Lv2Features::Lv2Features(Lv2World& world, double sampleRate, std::size_t maxBlock)
    : map_{&world, mapURI},
      unmap_{&world, unmapURI},
      sampleRate_(static_cast<float>(sampleRate)),
      longestBlock_(static_cast<std::int32_t>(maxBlock)),
      sequenceSize_(AtomBuffer::kCapacity) {
    const auto option = [&world](const char* key, const char* type, std::uint32_t size,
                                 const void* value) {
        return LV2_Options_Option{LV2_OPTIONS_INSTANCE, 0,    world.number(key), size,
                                  world.number(type),   value};
    };
    const auto length = [&option](const char* key, const std::int32_t& value) {
        return option(key, LV2_ATOM__Int, sizeof value, &value);
    };
    options_ = {
        length(LV2_BUF_SIZE__minBlockLength, shortestBlock_),
        length(LV2_BUF_SIZE__maxBlockLength, longestBlock_),
        length(LV2_BUF_SIZE__nominalBlockLength, longestBlock_),
        length(LV2_BUF_SIZE__sequenceSize, sequenceSize_),
        option(LV2_PARAMETERS__sampleRate, LV2_ATOM__Float, sizeof sampleRate_, &sampleRate_),
        LV2_Options_Option{},
    };
    features_ = {{
        {LV2_URID__map, &map_},
        {LV2_URID__unmap, &unmap_},
        {LV2_OPTIONS__options, options_.data()},
        {LV2_BUF_SIZE__boundedBlockLength, nullptr},
    }};
    std::transform(features_.begin(), features_.end(), list_.begin(),
                   [](const LV2_Feature& feature) { return &feature; });
    list_.back() = nullptr;
}

bool Lv2Features::offers(std::string_view uri) const noexcept {
    return std::any_of(features_.begin(), features_.end(),
                       [uri](const LV2_Feature& feature) { return uri == feature.URI; });
}

} // namespace orvanta::compare
