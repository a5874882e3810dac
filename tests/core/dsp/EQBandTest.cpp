#include "core/dsp/EQBand.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>

namespace orvanta {
namespace {

using coding::CodingError;
using coding::JSON;

TEST(EQBand, ThereAreTenFromThirtyOneHertzToSixteenThousand) {
    EXPECT_EQ(kEQBandCount, 10);
    EXPECT_EQ(kEQFrequencies,
              (std::array<float, 10>{31, 62, 125, 250, 500, 1000, 2000, 4000, 8000, 16000}));
    EXPECT_EQ(kEQLabels, (std::array<std::string_view, 10>{"31", "62", "125", "250", "500", "1K",
                                                           "2K", "4K", "8K", "16K"}));
}

TEST(EQBand, TypesHaveTheNumbersThatAreStored) {
    EXPECT_EQ(eqBandType(0), EQBandType::lowShelf);
    EXPECT_EQ(eqBandType(1), EQBandType::peaking);
    EXPECT_EQ(eqBandType(2), EQBandType::highShelf);
    for (const int other : {-1, 3, 100, std::numeric_limits<int>::min()})
        EXPECT_EQ(eqBandType(other), std::nullopt);
    for (const EQBandType each : kEQBandTypes)
        EXPECT_EQ(JSON(each).get<EQBandType>(), each);
}

TEST(EQBand, SimpleBandsHaveTheirPlacesAmongTheTen) {
    EXPECT_EQ(eqSimpleBand(3), EQSimpleBand::bass);
    EXPECT_EQ(eqSimpleBand(5), EQSimpleBand::mid);
    EXPECT_EQ(eqSimpleBand(7), EQSimpleBand::treble);
    for (const int other : {-1, 0, 1, 2, 4, 6, 8, 9, 10})
        EXPECT_EQ(eqSimpleBand(other), std::nullopt);
    EXPECT_EQ(kEQFrequencies[3], 250.0F);
    EXPECT_EQ(kEQFrequencies[5], 1000.0F);
    EXPECT_EQ(kEQFrequencies[7], 4000.0F);
}

TEST(EQBand, IsActiveBeyondATwentiethOfADecibel) {
    const auto isActiveAt = [](float gain) {
        return EQBand{gain, 1000, 1.4F, EQBandType::peaking}.isActive();
    };
    EXPECT_FALSE(isActiveAt(0.0F));
    EXPECT_FALSE(isActiveAt(0.05F));
    EXPECT_FALSE(isActiveAt(-0.05F));
    EXPECT_TRUE(isActiveAt(std::nextafter(0.05F, 1.0F)));
    EXPECT_TRUE(isActiveAt(std::nextafter(-0.05F, -1.0F)));
    EXPECT_TRUE(isActiveAt(-12.0F));
}

TEST(EQBand, EqualityComparesEveryField) {
    const EQBand band{3, 1000, 1.4F, EQBandType::peaking};
    EXPECT_EQ(band, (EQBand{3, 1000, 1.4F, EQBandType::peaking}));
    EXPECT_NE(band, (EQBand{3.0000002F, 1000, 1.4F, EQBandType::peaking}));
    EXPECT_NE(band, (EQBand{3, 1001, 1.4F, EQBandType::peaking}));
    EXPECT_NE(band, (EQBand{3, 1000, 1.5F, EQBandType::peaking}));
    EXPECT_NE(band, (EQBand{3, 1000, 1.4F, EQBandType::lowShelf}));
}

TEST(EQBand, IsWrittenUnderItsFourKeysAndReadBack) {
    const EQBand band{-2.5F, 31, 0.707F, EQBandType::highShelf};
    const JSON json = band;
    EXPECT_EQ(json.dump(), R"({"gain":-2.5,"frequency":31,"q":0.707,"type":2})");
    EXPECT_EQ(JSON::parse(json.dump()).get<EQBand>(), band);
}

TEST(EQBand, CannotBeReadWithAKeyMissingOrOfAnotherType) {
    const JSON whole = EQBand{3, 1000, 1.4F, EQBandType::peaking};
    for (const char* key : {"gain", "frequency", "q", "type"}) {
        JSON without = whole;
        without.erase(key);
        EXPECT_THROW((void)without.get<EQBand>(), CodingError) << key;
        JSON wrong = whole;
        wrong[key] = "3";
        EXPECT_THROW((void)wrong.get<EQBand>(), CodingError) << key;
    }
    EXPECT_THROW((void)JSON(3).get<EQBand>(), CodingError);
}

TEST(EQBand, CannotBeReadWithATypeThatThereIsNot) {
    JSON json = EQBand{3, 1000, 1.4F, EQBandType::peaking};
    for (const JSON& type : {JSON(3), JSON(-1), JSON(0.5)}) {
        json["type"] = type;
        EXPECT_THROW((void)json.get<EQBand>(), CodingError) << type;
    }
}

} // namespace
} // namespace orvanta
