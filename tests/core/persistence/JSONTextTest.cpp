#include "core/persistence/coding/JSONText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <rapidcheck/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace orvanta::coding {
namespace {

/// Any float but those that JSON has no number for, each bit pattern alike.
float anyFinite(std::uint32_t bits) {
    const auto value = std::bit_cast<float>(bits);
    return std::isfinite(value) ? value : 0.0F;
}

TEST(JSONText, HasNoSpacesAndKeepsTheOrderOfMembers) {
    JSON json = JSON::object();
    json["b"] = 1;
    json["a"] = JSON::array({true, nullptr, "x"});
    json["none"] = JSON::array();
    json["empty"] = JSON::object();
    EXPECT_EQ(text(json), R"({"b":1,"a":[true,null,"x"],"none":[],"empty":{}})");
}

TEST(JSONText, WritesNumbersWithTheFewestDigits) {
    EXPECT_EQ(text(encoded(0.1F)), "0.1");
    EXPECT_EQ(text(encoded(-2.5F)), "-2.5");
    EXPECT_EQ(text(encoded(3.4028235e38F)), "3.4028235e+38");
    EXPECT_EQ(text(encoded(1e-45F)), "1e-45");
    EXPECT_EQ(text(encoded(817458896.123456)), "817458896.123456");
    // Which the library's own writer tells with eight digits more.
    EXPECT_EQ(text(encoded(3.7329295e19F)), "3.7329295e+19");
}

TEST(JSONText, WritesWholeNumbersWithoutAFraction) {
    EXPECT_EQ(text(encoded(1.0F)), "1");
    EXPECT_EQ(text(encoded(-12.0F)), "-12");
    EXPECT_EQ(text(encoded(0.0F)), "0");
    EXPECT_EQ(text(encoded(-0.0F)), "-0");
    EXPECT_EQ(text(encoded(817458896.0)), "817458896");
}

TEST(JSONText, EscapesWhatAStringCannotHold) {
    EXPECT_EQ(text(std::string_view("a\"b\\c\n\x01")), R"("a\"b\\c\n\u0001")");
    EXPECT_EQ(text(std::string_view("Grüße \U0001F319")), "\"Grüße \U0001F319\"");
}

TEST(JSONText, RefusesStringsThatAreNoUTF8) {
    EXPECT_THROW((void)text(std::string_view("\xff")), CodingError);
    EXPECT_THROW((void)text(JSON::array({"\xc3"})), CodingError);
}

TEST(JSONText, RefusesNumbersThatAreNotFinite) {
    for (const float value : {std::nanf(""), std::numeric_limits<float>::infinity(),
                              -std::numeric_limits<float>::infinity()}) {
        EXPECT_THROW((void)text(encoded(value)), CodingError);
        EXPECT_THROW((void)text(encoded(static_cast<double>(value))), CodingError);
    }
}

TEST(JSONText, IsReadAsAWholeOrNotAtAll) {
    EXPECT_EQ(parsed(R"({"a":[1]})"), JSON({{"a", JSON::array({1})}}));
    for (const char* broken : {"", "{", "[1,]", "{} {}", "nul", "1e999", "\"\xff\""})
        EXPECT_THROW((void)parsed(broken), CodingError) << broken;
}

TEST(JSONText, SurvivesAnyDepth) {
    const std::string deep(1'000'000, '[');
    EXPECT_THROW((void)parsed(deep), CodingError);
    EXPECT_NO_THROW((void)parsed(deep + std::string(deep.size(), ']')));
}

RC_GTEST_PROP(JSONText, ReadsBackEveryFloatFromItsShortestDecimal, (std::uint32_t bits)) {
    const float value = anyFinite(bits);
    const std::string written = text(encoded(value));
    RC_ASSERT(decodedFloat(parsed(written)) == value);
    float shortest = 0;
    std::from_chars(written.data(), written.data() + written.size(), shortest);
    RC_ASSERT(shortest == value);
    char expected[64];
    const char* const end = std::to_chars(expected, expected + sizeof expected, value).ptr;
    if (std::trunc(value) != value)
        RC_ASSERT(written.size() <= static_cast<std::size_t>(end - expected));
}

} // namespace
} // namespace orvanta::coding
