#pragma once

#include <spa/utils/hook.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

struct pw_device;
struct pw_registry;
struct spa_pod;

namespace orvanta::pipewire {

/// One sound card: who made it, and its active routes. A real card keeps the volume of a sink in
/// the route that the sink plays through, so that it lasts over replugging and each route has its
/// own.
class CardRoutes {
public:
    CardRoutes(pw_registry* registry, std::uint32_t id, std::function<void()> changed);
    ~CardRoutes();
    CardRoutes(const CardRoutes&) = delete;
    CardRoutes& operator=(const CardRoutes&) = delete;

    /// Empty while it is not known, and for cards that do not tell.
    [[nodiscard]] const std::string& vendor() const { return vendor_; }

    /// Linear factors of the route behind one of the card's devices; empty when there is no route.
    [[nodiscard]] std::vector<float> channelVolumes(std::uint32_t profileDevice) const;

    /// False when there is no route to set it on.
    bool setChannelVolumes(std::uint32_t profileDevice, const std::vector<float>& volumes);

private:
    friend struct CardEvents;

    struct Route {
        std::int32_t index = 0;
        std::vector<float> channelVolumes;
    };

    void learn(const spa_pod* param);

    std::function<void()> changed_;
    pw_device* device_ = nullptr;
    spa_hook hook_{};
    std::string vendor_;
    std::map<std::uint32_t, Route> routes_;
};

} // namespace orvanta::pipewire
