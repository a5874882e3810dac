#include "bench/compare/Lv2Plugin.h"

#include <stdexcept>

namespace orvanta::compare {

Lv2Plugin::Lv2Plugin(Lv2World& world, const std::string& uri, double sampleRate,
                     std::size_t maxBlock)
    : world_(world),
      uri_(uri),
      plugin_(world.plugin(uri)),
      features_(world, sampleRate, maxBlock),
      controls_(lilv_plugin_get_num_ports(plugin_)) {
    refuseUnknownFeatures();
    instance_.reset(lilv_plugin_instantiate(plugin_, sampleRate, features_.list()));
    if (!instance_)
        throw std::runtime_error("does not start: " + uri);
    lilv_plugin_get_port_ranges_float(plugin_, nullptr, nullptr, controls_.data());
    for (std::uint32_t index = 0; index < controls_.size(); ++index)
        connectPort(index);
}

Lv2Plugin::~Lv2Plugin() {
    if (isActive_)
        lilv_instance_deactivate(instance_.get());
}

void Lv2Plugin::refuseUnknownFeatures() const {
    const NodesPtr required(lilv_plugin_get_required_features(plugin_));
    LILV_FOREACH(nodes, position, required.get()) {
        const char* const feature = lilv_node_as_uri(lilv_nodes_get(required.get(), position));
        if (!features_.offers(feature))
            throw std::runtime_error(uri_ + " needs " + feature + ", which this host has not");
    }
}

void Lv2Plugin::connectPort(std::uint32_t index) {
    const LilvPort* const each = lilv_plugin_get_port_by_index(plugin_, index);
    void* memory = nullptr;
    if (is(each, LV2_CORE__ControlPort)) {
        memory = &controls_[index];
    } else if (is(each, LV2_ATOM__AtomPort)) {
        const auto optional = world_.uriNode(LV2_CORE__connectionOptional);
        if (!lilv_port_has_property(plugin_, each, optional.get()))
            memory =
                atoms_
                    .emplace_back(is(each, LV2_CORE__InputPort), world_.number(LV2_ATOM__Sequence),
                                  world_.number(LV2_ATOM__Chunk))
                    .data();
    } else if (!is(each, LV2_CORE__AudioPort)) {
        throw std::runtime_error(uri_ + " has a port of a kind unknown to this host");
    }
    lilv_instance_connect_port(instance_.get(), index, memory);
}

const LilvPort* Lv2Plugin::port(const std::string& symbol) const {
    const LilvPort* const found =
        lilv_plugin_get_port_by_symbol(plugin_, world_.textNode(symbol).get());
    if (found == nullptr)
        throw std::runtime_error(uri_ + " has no port " + symbol);
    return found;
}

bool Lv2Plugin::is(const LilvPort* port, const char* kind) const {
    return lilv_port_is_a(plugin_, port, world_.uriNode(kind).get());
}

float& Lv2Plugin::controlInput(const std::string& symbol) {
    const LilvPort* const found = port(symbol);
    if (!is(found, LV2_CORE__ControlPort) || !is(found, LV2_CORE__InputPort))
        throw std::runtime_error(symbol + " of " + uri_ + " is no control input");
    return controls_[lilv_port_get_index(plugin_, found)];
}

void Lv2Plugin::set(const std::string& symbol, double value) {
    float& place = controlInput(symbol);
    LilvNode* low = nullptr;
    LilvNode* high = nullptr;
    lilv_port_get_range(plugin_, port(symbol), nullptr, &low, &high);
    const NodePtr minimum(low);
    const NodePtr maximum(high);
    if ((minimum && value < static_cast<double>(lilv_node_as_float(low))) ||
        (maximum && value > static_cast<double>(lilv_node_as_float(high))))
        throw std::runtime_error(symbol + " of " + uri_ + " does not reach " +
                                 std::to_string(value));
    place = static_cast<float>(value);
}

void Lv2Plugin::choose(const std::string& symbol, std::string_view label) {
    const ScalePointsPtr points(lilv_port_get_scale_points(plugin_, port(symbol)));
    LILV_FOREACH(scale_points, position, points.get()) {
        const LilvScalePoint* const each = lilv_scale_points_get(points.get(), position);
        if (label == lilv_node_as_string(lilv_scale_point_get_label(each)))
            return set(symbol,
                       static_cast<double>(lilv_node_as_float(lilv_scale_point_get_value(each))));
    }
    throw std::runtime_error(symbol + " of " + uri_ + " has no value " + std::string(label));
}

void Lv2Plugin::connect(const std::string& symbol, float* samples) {
    const LilvPort* const found = port(symbol);
    if (!is(found, LV2_CORE__AudioPort))
        throw std::runtime_error(symbol + " of " + uri_ + " carries no audio");
    lilv_instance_connect_port(instance_.get(), lilv_port_get_index(plugin_, found), samples);
}

void Lv2Plugin::activate() {
    lilv_instance_activate(instance_.get());
    isActive_ = true;
}

void Lv2Plugin::run(std::size_t frames) noexcept {
    for (AtomBuffer& atom : atoms_)
        atom.prepare();
    lilv_instance_run(instance_.get(), static_cast<std::uint32_t>(frames));
}

} // namespace orvanta::compare
