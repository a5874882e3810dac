#include "platform/pipewire/ServerObjects.h"

#include "tests/platform/pipewire/support/Properties.h"

#include <gtest/gtest.h>

namespace orvanta::pipewire {
namespace {

bool mayBeHeardIn(const char* mediaClass, NodeKind kind = NodeKind::other) {
    ServerNode node;
    node.kind = kind;
    node.properties = test::properties({{"media.class", mediaClass}});
    return mayBeHeard(node);
}

TEST(ServerObjects, MayBeHeardWhereverNobodyKnowsBetter) {
    EXPECT_TRUE(mayBeHeardIn("Audio/Sink", NodeKind::device));
    EXPECT_TRUE(mayBeHeardIn("Audio/Duplex"));
    EXPECT_TRUE(mayBeHeardIn("", NodeKind::patched));
    EXPECT_TRUE(mayBeHeardIn("Nonsense"));
}

TEST(ServerObjects, AreNotHeardInRecordingsAndMicrophones) {
    EXPECT_FALSE(mayBeHeardIn("Stream/Input/Audio", NodeKind::inputStream));
    EXPECT_FALSE(mayBeHeardIn("Audio/Source"));
    EXPECT_FALSE(mayBeHeardIn("Audio/Source/Virtual"));
}

} // namespace
} // namespace orvanta::pipewire
