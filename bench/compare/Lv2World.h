#pragma once

#include <lilv/lilv.h>
#include <lv2/urid/urid.h>

#include <map>
#include <memory>
#include <string>

namespace orvanta::compare {

/// Hands what lilv gave out back to it.
template <auto giveBack>
struct GiveBack {
    template <class Kind>
    void operator()(Kind* given) const noexcept {
        giveBack(given);
    }
};

using NodePtr = std::unique_ptr<LilvNode, GiveBack<lilv_node_free>>;
using NodesPtr = std::unique_ptr<LilvNodes, GiveBack<lilv_nodes_free>>;
using ScalePointsPtr = std::unique_ptr<LilvScalePoints, GiveBack<lilv_scale_points_free>>;
using InstancePtr = std::unique_ptr<LilvInstance, GiveBack<lilv_instance_free>>;
using WorldPtr = std::unique_ptr<LilvWorld, GiveBack<lilv_world_free>>;

/// Every LV2 plug-in installed on this machine, and the numbers that stand for URIs among them and
/// us. Outlives the plug-ins it made.
class Lv2World {
public:
    Lv2World();
    Lv2World(const Lv2World&) = delete;
    Lv2World& operator=(const Lv2World&) = delete;

    /// Throws when it is not installed.
    [[nodiscard]] const LilvPlugin* plugin(const std::string& uri) const;

    [[nodiscard]] NodePtr uriNode(const std::string& uri) const;
    [[nodiscard]] NodePtr textNode(const std::string& text) const;

    /// The same number for the same URI, never 0.
    LV2_URID number(const char* uri);
    /// Null for a number that was never given out.
    const char* uri(LV2_URID number) const;

private:
    WorldPtr world_;
    std::map<std::string, LV2_URID> numbers_;
};

} // namespace orvanta::compare
