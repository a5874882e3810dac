#include "core/platform/UUID.h"

#include <gtest/gtest.h>

namespace orvanta {
namespace {

constexpr const char* kText = "0123ABCD-4567-89EF-0011-FEDCBA987654";
const UUID kUUID{{0x01, 0x23, 0xab, 0xcd, 0x45, 0x67, 0x89, 0xef, 0x00, 0x11, 0xfe, 0xdc, 0xba,
                  0x98, 0x76, 0x54}};

TEST(UUID, IsWrittenInUpperCase) {
    EXPECT_EQ(kUUID.uuidString(), kText);
    EXPECT_EQ(UUID().uuidString(), "00000000-0000-0000-0000-000000000000");
}

TEST(UUID, IsReadInEitherCase) {
    EXPECT_EQ(UUID::from(kText), kUUID);
    EXPECT_EQ(UUID::from("0123abcd-4567-89ef-0011-fedcba987654"), kUUID);
}

TEST(UUID, IsNoOtherText) {
    for (const char* text :
         {"", "0123ABCD", "0123ABCD-4567-89EF-0011-FEDCBA98765",
          "0123ABCD-4567-89EF-0011-FEDCBA9876540", "0123ABCD4-567-89EF-0011-FEDCBA987654",
          "0123ABCD-4567-89EF-0011-FEDCBA98765G", "0123ABCD-4567-89EF-0011-FEDCBA98765 ",
          "{123ABCD-4567-89EF-0011-FEDCBA98765}"})
        EXPECT_EQ(UUID::from(text), std::nullopt) << text;
}

TEST(UUID, IsMadeAtRandom) {
    const UUID one = UUID::random();
    EXPECT_NE(one, UUID::random());
    EXPECT_EQ(one.uuidString()[14], '4') << "the version";
    EXPECT_NE(std::string("89AB").find(one.uuidString()[19]), std::string::npos) << "the variant";
    EXPECT_EQ(UUID::from(one.uuidString()), one);
}

} // namespace
} // namespace orvanta
