#include "platform/pipewire/ClientIdentity.h"

#include "platform/pipewire/PrintableText.h"

#include <pipewire/keys.h>

#include <initializer_list>

namespace orvanta::pipewire {
namespace {

/// More than any name or id of a program has, and little enough to keep for each.
constexpr std::size_t kLongestText = 256;

/// The ALSA plug-in wraps the name of the program that has loaded it.
std::string_view unwrapped(std::string_view name) {
    constexpr std::string_view kBefore = "PipeWire ALSA [";
    constexpr std::string_view kAfter = "]";
    if (name.size() <= kBefore.size() + kAfter.size() ||
        name.substr(0, kBefore.size()) != kBefore || name.back() != kAfter[0])
        return name;
    name.remove_prefix(kBefore.size());
    name.remove_suffix(kAfter.size());
    return name;
}

class Teller {
public:
    Teller(const PropertyMap& node, const PropertyMap* client) : node_(node), client_(client) {}

    /// The first of the keys that there is a text for, each looked up in the node, then in the
    /// client.
    [[nodiscard]] std::string_view first(std::initializer_list<const char*> keys) const {
        for (const char* key : keys)
            for (const PropertyMap* properties : {&node_, client_})
                if (properties != nullptr && properties->has(key))
                    return properties->text(key);
        return {};
    }

private:
    const PropertyMap& node_;
    const PropertyMap* client_;
};

} // namespace

AudioClient clientIdentity(const PropertyMap& node, const PropertyMap* client) {
    const Teller told(node, client);
    AudioClient identity;
    identity.name = printable(unwrapped(told.first({PW_KEY_APP_NAME})), kLongestText);
    identity.applicationID =
        printable(told.first({"pipewire.access.portal.app_id", PW_KEY_APP_ID}), kLongestText);
    // The second form is what some programs write and nobody reads.
    identity.iconName =
        printable(told.first({PW_KEY_APP_ICON_NAME, "application.icon_name"}), kLongestText);
    identity.binary = printable(told.first({PW_KEY_APP_PROCESS_BINARY}), kLongestText);
    return identity;
}

void complete(AudioClient& client, const AudioClient& other) {
    const auto fill = [](std::string& text, const std::string& from) {
        if (text.empty())
            text = from;
    };
    fill(client.name, other.name);
    fill(client.applicationID, other.applicationID);
    fill(client.iconName, other.iconName);
    fill(client.binary, other.binary);
}

} // namespace orvanta::pipewire
