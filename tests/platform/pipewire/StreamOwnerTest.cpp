#include "platform/pipewire/StreamOwner.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

namespace orvanta::pipewire {
namespace {

PropertyMap properties(std::initializer_list<std::pair<const char*, const char*>> entries) {
    PropertyMap map;
    for (const auto& [key, value] : entries)
        map.set(key, value);
    return map;
}

TEST(StreamOwner, IsWhatTheStreamItselfSays) {
    const PropertyMap node = properties({{"application.process.id", "100"}});
    const PropertyMap client = properties({{"application.process.id", "200"}});
    EXPECT_EQ(streamOwner(node, &client), 100);
    EXPECT_EQ(streamOwner(node, nullptr), 100);
}

TEST(StreamOwner, IsElseWhatItsClientSays) {
    const PropertyMap client =
        properties({{"application.process.id", "200"}, {"pipewire.sec.pid", "300"}});
    EXPECT_EQ(streamOwner(PropertyMap(), &client), 200);
}

TEST(StreamOwner, IsElseThePeerOfTheClientsSocket) {
    const PropertyMap client = properties({{"pipewire.sec.pid", "300"}});
    EXPECT_EQ(streamOwner(PropertyMap(), &client), 300);
}

TEST(StreamOwner, IsNeverThePulseBridge) {
    const PropertyMap silent =
        properties({{"pipewire.sec.pid", "300"}, {"client.api", "pipewire-pulse"}});
    EXPECT_EQ(streamOwner(PropertyMap(), &silent), std::nullopt);

    const PropertyMap open = properties({{"pipewire.sec.pid", "300"},
                                         {"client.api", "pipewire-pulse"},
                                         {"application.process.id", "200"}});
    EXPECT_EQ(streamOwner(PropertyMap(), &open), 200);
}

TEST(StreamOwner, IsUnknownWhereNobodySaysAnything) {
    const PropertyMap client;
    EXPECT_EQ(streamOwner(PropertyMap(), &client), std::nullopt);
    EXPECT_EQ(streamOwner(PropertyMap(), nullptr), std::nullopt);
}

TEST(StreamOwner, PassesOverWhatIsNoProcessId) {
    const PropertyMap client = properties({{"application.process.id", "200"}});
    for (const char* nonsense : {"", "0", "-5", "12x", " 12", "4294967295", "99999999999999999999"})
        EXPECT_EQ(streamOwner(properties({{"application.process.id", nonsense}}), &client), 200)
            << "'" << nonsense << "'";
}

} // namespace
} // namespace orvanta::pipewire
