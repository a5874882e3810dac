#include "platform/pipewire/StreamOwner.h"

#include <pipewire/keys.h>

#include <limits>

namespace orvanta::pipewire {
namespace {

std::optional<pid_t> processId(const PropertyMap& properties, std::string_view key) {
    const auto number = properties.number(key);
    if (!number || *number == 0 ||
        *number > static_cast<std::uint32_t>(std::numeric_limits<pid_t>::max()))
        return std::nullopt;
    return static_cast<pid_t>(*number);
}

bool isBridged(const PropertyMap& properties) {
    return properties.text(PW_KEY_CLIENT_API) == "pipewire-pulse";
}

std::optional<pid_t> either(std::optional<pid_t> first, std::optional<pid_t> second) {
    return first ? first : second;
}

} // namespace

std::optional<pid_t> streamOwner(const PropertyMap& node, const PropertyMap* client) {
    const auto toldByNode = processId(node, PW_KEY_APP_PROCESS_ID);
    if (client == nullptr)
        return isBridged(node) || !node.has(PW_KEY_CLIENT_ID) ? toldByNode : std::nullopt;
    const auto told = either(toldByNode, processId(*client, PW_KEY_APP_PROCESS_ID));
    if (isBridged(node) || isBridged(*client))
        return told;
    return either(processId(*client, PW_KEY_SEC_PID), told);
}

} // namespace orvanta::pipewire
