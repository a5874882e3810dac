#include "bench/compare/Lv2World.h"

#include <stdexcept>

namespace orvanta::compare {

Lv2World::Lv2World() : world_(lilv_world_new()) {
    lilv_world_load_all(world_.get());
}

const LilvPlugin* Lv2World::plugin(const std::string& uri) const {
    const LilvPlugin* const found =
        lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world_.get()), uriNode(uri).get());
    if (found == nullptr)
        throw std::runtime_error("no such plug-in is installed: " + uri);
    return found;
}

NodePtr Lv2World::uriNode(const std::string& uri) const {
    return NodePtr(lilv_new_uri(world_.get(), uri.c_str()));
}

NodePtr Lv2World::textNode(const std::string& text) const {
    return NodePtr(lilv_new_string(world_.get(), text.c_str()));
}

LV2_URID Lv2World::number(const char* uri) {
    return numbers_.try_emplace(uri, static_cast<LV2_URID>(numbers_.size() + 1)).first->second;
}

const char* Lv2World::uri(LV2_URID number) const {
    for (const auto& [uri, each] : numbers_)
        if (each == number)
            return uri.c_str();
    return nullptr;
}

} // namespace orvanta::compare
