#include "platform/pipewire/ClientIdentity.h"

#include "tests/platform/pipewire/support/Properties.h"

#include <gtest/gtest.h>

namespace orvanta::pipewire {
namespace {

using test::properties;

TEST(ClientIdentity, IsToldByTheStreamFirst) {
    const PropertyMap node = properties({{"application.name", "Web Player"},
                                         {"application.id", "org.example.Player"},
                                         {"application.icon-name", "player"},
                                         {"application.process.binary", "player-bin"}});
    const PropertyMap client = properties({{"application.name", "Helper"},
                                           {"application.id", "org.example.Helper"},
                                           {"application.icon-name", "helper"},
                                           {"application.process.binary", "helper-bin"}});
    const AudioClient identity = clientIdentity(node, &client);
    EXPECT_EQ(identity.name, "Web Player");
    EXPECT_EQ(identity.applicationID, "org.example.Player");
    EXPECT_EQ(identity.iconName, "player");
    EXPECT_EQ(identity.binary, "player-bin");
    EXPECT_EQ(clientIdentity(PropertyMap(), &client).name, "Helper");
    EXPECT_EQ(clientIdentity(PropertyMap(), &client).applicationID, "org.example.Helper");
    EXPECT_EQ(clientIdentity(PropertyMap(), &client).iconName, "helper");
    EXPECT_EQ(clientIdentity(PropertyMap(), &client).binary, "helper-bin");
}

/// The portal knows which sandbox it speaks to; the program may call itself what it likes.
TEST(ClientIdentity, IsTheSandboxesBeforeTheProgramsOwn) {
    const PropertyMap node = properties({{"application.id", "org.example.Claimed"}});
    const PropertyMap client = properties({{"pipewire.access.portal.app_id", "org.example.True"}});
    EXPECT_EQ(clientIdentity(node, &client).applicationID, "org.example.True");
}

TEST(ClientIdentity, TakesTheIconNameInBothSpellings) {
    const PropertyMap node = properties({{"application.icon_name", "player"}});
    EXPECT_EQ(clientIdentity(node, nullptr).iconName, "player");
}

TEST(ClientIdentity, HasNoNameOfASongOrStreamForTheProgram) {
    const PropertyMap node = properties({{"media.name", "Some Song"},
                                         {"node.name", "alsa_playback.x"},
                                         {"node.description", "Playback"}});
    EXPECT_EQ(clientIdentity(node, nullptr).name, "");
}

TEST(ClientIdentity, TakesTheWrappingOfTheALSAPlugInOff) {
    const auto nameFor = [](const char* told) {
        return clientIdentity(properties({{"application.name", told}}), nullptr).name;
    };
    EXPECT_EQ(nameFor("PipeWire ALSA [sox]"), "sox");
    EXPECT_EQ(nameFor("PipeWire ALSA []"), "PipeWire ALSA []");
    EXPECT_EQ(nameFor("PipeWire ALSA [sox"), "PipeWire ALSA [sox");
}

TEST(ClientIdentity, IsTextOfASensibleLength) {
    const std::string endless(100000, 'x');
    const PropertyMap node = properties(
        {{"application.name", "a\xFF"}, {"application.process.binary", endless.c_str()}});
    const AudioClient identity = clientIdentity(node, nullptr);
    EXPECT_EQ(identity.name, "a\uFFFD");
    EXPECT_EQ(identity.binary.size(), 256U);
}

TEST(ClientIdentity, IsCompletedButNotChangedByWhatComesLater) {
    AudioClient known{7, "First", "", "icon", ""};
    complete(known, {8, "Second", "org.example", "other", "bin"});
    EXPECT_EQ(known.pid, 7);
    EXPECT_EQ(known.name, "First");
    EXPECT_EQ(known.applicationID, "org.example");
    EXPECT_EQ(known.iconName, "icon");
    EXPECT_EQ(known.binary, "bin");
}

} // namespace
} // namespace orvanta::pipewire
