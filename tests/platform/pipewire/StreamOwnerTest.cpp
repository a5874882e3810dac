#include "platform/pipewire/StreamOwner.h"

#include "tests/platform/pipewire/support/Properties.h"

#include <gtest/gtest.h>

namespace orvanta::pipewire {
namespace {

using test::properties;

TEST(StreamOwner, IsThePeerOfTheClientsSocket) {
    const PropertyMap client = properties({{"pipewire.sec.pid", "300"}});
    EXPECT_EQ(streamOwner(PropertyMap(), &client), 300);
}

/// Inside of a container a program has another id, which outside may be anybody's.
TEST(StreamOwner, IsThePeerWhateverASandboxedProgramSaysOfItself) {
    const PropertyMap node = properties({{"client.id", "40"}, {"application.process.id", "2"}});
    for (const char* access : {"flatpak", "portal", "unrestricted", ""}) {
        const PropertyMap client = properties({{"pipewire.sec.pid", "300"},
                                               {"application.process.id", "3"},
                                               {"pipewire.access", access}});
        EXPECT_EQ(streamOwner(node, &client), 300) << access;
    }
}

TEST(StreamOwner, IsWhatTheProgramSaysWhereNobodySeesThePeer) {
    const PropertyMap client =
        properties({{"application.process.id", "200"}, {"pipewire.sec.pid", "0"}});
    EXPECT_EQ(streamOwner(PropertyMap(), &client), 200);
    EXPECT_EQ(streamOwner(properties({{"application.process.id", "100"}}), &client), 100);
}

TEST(StreamOwner, IsNeverThePulseBridge) {
    const PropertyMap silent =
        properties({{"pipewire.sec.pid", "300"}, {"client.api", "pipewire-pulse"}});
    EXPECT_EQ(streamOwner(PropertyMap(), &silent), std::nullopt);

    const PropertyMap open = properties({{"pipewire.sec.pid", "300"},
                                         {"client.api", "pipewire-pulse"},
                                         {"application.process.id", "200"}});
    EXPECT_EQ(streamOwner(PropertyMap(), &open), 200);
    EXPECT_EQ(streamOwner(properties({{"application.process.id", "100"}}), &open), 100);
}

TEST(StreamOwner, IsWhatABridgedStreamSaysEvenBeforeItsClientIsKnown) {
    const PropertyMap node = properties(
        {{"client.id", "40"}, {"client.api", "pipewire-pulse"}, {"application.process.id", "100"}});
    EXPECT_EQ(streamOwner(node, nullptr), 100);
}

TEST(StreamOwner, IsUnknownUntilTheClientIs) {
    const PropertyMap node = properties({{"client.id", "40"}, {"application.process.id", "2"}});
    EXPECT_EQ(streamOwner(node, nullptr), std::nullopt);
    const PropertyMap server = properties({{"application.process.id", "100"}});
    EXPECT_EQ(streamOwner(server, nullptr), 100) << "a node of no client has no other witness";
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
