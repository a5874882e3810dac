// Whatever becomes of the stored bytes, reading them gives records or nothing, and never more than
// what the bytes tell.

#include "core/persistence/StoredRecords.h"
#include "tests/core/persistence/GoldenFile.h"

#include <gtest/gtest.h>

#include <string>

namespace orvanta {
namespace {

/// Two applications, one with everything.
std::string storedSettings() {
    return R"({"a":)" + test::golden("settings-full.json") + R"(,"b":)" +
           test::golden("settings-plain.json") + "}";
}

template <class Decode>
void expectEmptyForEveryTruncation(const std::string& stored, const Decode& decoded) {
    ASSERT_FALSE(decoded(stored).empty());
    for (std::size_t length = 0; length < stored.size(); ++length)
        EXPECT_TRUE(decoded(std::string_view(stored).substr(0, length)).empty()) << length;
}

template <class Decode>
void expectNoHarmFromFlips(std::string stored, std::size_t atMost, const Decode& decoded) {
    for (char& byte : stored) {
        const char sound = byte;
        for (const int flip : {1, 2, 4, 8, 16, 32, 64, 128, 255}) {
            byte = static_cast<char>(sound ^ flip);
            EXPECT_LE(decoded(stored).size(), atMost);
        }
        byte = sound;
    }
}

TEST(StoredSettings, ReadAsEmptyWhenTheirEndIsMissing) {
    expectEmptyForEveryTruncation(storedSettings(), decodedSettings);
}

TEST(StoredSettings, SurviveFlipsInEveryByte) {
    expectNoHarmFromFlips(storedSettings(), 2, decodedSettings);
}

TEST(StoredProfiles, ReadAsEmptyWhenTheirEndIsMissing) {
    expectEmptyForEveryTruncation(test::golden("stored-profiles.json"), decodedProfiles);
}

TEST(StoredProfiles, SurviveFlipsInEveryByte) {
    expectNoHarmFromFlips(test::golden("stored-profiles.json"), 2, decodedProfiles);
}

} // namespace
} // namespace orvanta
