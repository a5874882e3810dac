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

} // namespace

std::optional<pid_t> streamOwner(const PropertyMap& node, const PropertyMap* client) {
    if (const auto pid = processId(node, PW_KEY_APP_PROCESS_ID))
        return pid;
    if (client == nullptr)
        return std::nullopt;
    if (const auto pid = processId(*client, PW_KEY_APP_PROCESS_ID))
        return pid;
    if (client->text(PW_KEY_CLIENT_API) == "pipewire-pulse")
        return std::nullopt;
    return processId(*client, PW_KEY_SEC_PID);
}

} // namespace orvanta::pipewire
