#include "core/persistence/coding/JSONText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvanta::coding {
namespace {

TEST(JSONCoding, WritesAFloatAsShortAsAFloatCanBeTold) {
    EXPECT_EQ(encoded(0.1F).dump(), "0.1");
    EXPECT_EQ(encoded(-2.5F).dump(), "-2.5");
    EXPECT_EQ(encoded(4.0001F).dump(), "4.0001");
    EXPECT_EQ(encoded(3.4028235e38F).dump(), "3.4028235e+38");
}

TEST(JSONCoding, WritesAWholeFloatAsAnInteger) {
    EXPECT_EQ(encoded(3.0F).dump(), "3");
    EXPECT_EQ(encoded(-12.0F).dump(), "-12");
    EXPECT_EQ(encoded(0.0F).dump(), "0");
    EXPECT_EQ(encoded(16777216.0F).dump(), "16777216");
}

TEST(JSONCoding, ReadsBackEveryFloatItWrites) {
    // The last one is what a double of its decimal would round to its neighbour.
    for (const float value : {0.1F, -0.0F, 1e-45F, 1.17549435e-38F, 0.33333334F, 123456.79F, 1e20F,
                              3.4028235e38F, 7.038531e-26F})
        EXPECT_EQ(decodedFloat(parsed(text(encoded(value)))), value);
}

TEST(JSONCoding, TakesNoTypeForAnother) {
    EXPECT_THROW((void)decodedFloat(JSON(true)), CodingError);
    EXPECT_THROW((void)decodedFloat(JSON("3")), CodingError);
    EXPECT_THROW((void)decodedBool(JSON(1)), CodingError);
    EXPECT_THROW((void)decodedString(JSON(1)), CodingError);
    EXPECT_THROW((void)decodedArray(JSON::object()), CodingError);
    EXPECT_THROW((void)decodedInt(JSON(1.5)), CodingError);
    EXPECT_THROW((void)decodedInt(JSON(4294967296)), CodingError);
    EXPECT_EQ(decodedInt(JSON(2)), 2);
    EXPECT_TRUE(decodedBool(JSON(true)));
    EXPECT_EQ(decodedString(JSON("peak")), "peak");
}

TEST(JSONCoding, RefusesNumbersThatNoFloatCanHold) {
    EXPECT_THROW((void)decodedFloat(JSON(1e39)), CodingError);
    EXPECT_THROW((void)decodedFloat(JSON(-1e39)), CodingError);
}

TEST(JSONCoding, TellsAMissingKeyFromAnotherType) {
    const JSON object = JSON::parse(R"({"gain": 3, "none": null})");
    EXPECT_EQ(decodedFloat(required(object, "gain")), 3.0F);
    EXPECT_EQ(optional(object, "none"), nullptr);
    EXPECT_EQ(optional(object, "other"), nullptr);
    EXPECT_THROW((void)required(object, "none"), CodingError);
    EXPECT_THROW((void)required(object, "other"), CodingError);
    EXPECT_THROW((void)optional(JSON::array(), "gain"), CodingError);
}

} // namespace
} // namespace orvanta::coding
