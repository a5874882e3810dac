#include "platform/pipewire/DefaultSinkName.h"

#include <gtest/gtest.h>

namespace orvanta::pipewire {
namespace {

TEST(DefaultSinkName, IsTheNameInTheObject) {
    EXPECT_EQ(defaultSinkName(R"({"name":"speakers"})"), "speakers");
    EXPECT_EQ(defaultSinkName(R"( { "name" : "alsa_output.pci-0000_00_1f.3.analog-stereo" } )"),
              "alsa_output.pci-0000_00_1f.3.analog-stereo");
}

TEST(DefaultSinkName, IsFoundBesideOtherEntries) {
    EXPECT_EQ(defaultSinkName(R"({"id": 4, "more": {"name": "no"}, "name": "yes"})"), "yes");
}

TEST(DefaultSinkName, MayHoldAnyCharacter) {
    EXPECT_EQ(defaultSinkName(R"({"name":"a \"b\" \\ c"})"), R"(a "b" \ c)");
    EXPECT_EQ(defaultSinkName(R"({"name":"Lautsprecher für Grüße"})"), "Lautsprecher für Grüße");
}

TEST(DefaultSinkName, IsEmptyWhereThereIsNone) {
    for (const char* text : {"", "speakers", "{}", "[]", "null", R"({"name":5})", R"({"name":})",
                             R"({"name")", "{", R"({"other":"x"})"})
        EXPECT_EQ(defaultSinkName(text), "") << text;
}

} // namespace
} // namespace orvanta::pipewire
