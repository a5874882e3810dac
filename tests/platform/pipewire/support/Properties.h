#pragma once

#include "platform/pipewire/PropertyMap.h"

#include <initializer_list>
#include <utility>

namespace orvanta::pipewire::test {

/// Properties of a server object, written down.
inline PropertyMap properties(std::initializer_list<std::pair<const char*, const char*>> entries) {
    PropertyMap map;
    for (const auto& [key, value] : entries)
        map.set(key, value);
    return map;
}

} // namespace orvanta::pipewire::test
