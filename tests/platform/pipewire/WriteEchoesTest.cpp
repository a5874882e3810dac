#include "platform/pipewire/WriteEchoes.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using pipewire::MetadataValue;
using pipewire::WriteEchoes;

const MetadataValue kTap{"Spa:String", "tap"};
const MetadataValue kSpeakers{"Spa:String", "speakers"};
const MetadataValue kNothing;

TEST(WriteEchoes, AreInForceWhenNothingWasWrittenSince) {
    WriteEchoes echoes;
    echoes.expect(7, "target", kTap);
    EXPECT_FALSE(echoes.isOutdated(7, "target", kTap));
}

TEST(WriteEchoes, OfEarlierWritesAreOutdatedUntilTheLast) {
    WriteEchoes echoes;
    echoes.expect(7, "target", kTap);
    echoes.expect(7, "target", kNothing);
    echoes.expect(7, "target", kTap);
    EXPECT_TRUE(echoes.isOutdated(7, "target", kTap));
    EXPECT_TRUE(echoes.isOutdated(7, "target", kNothing));
    EXPECT_FALSE(echoes.isOutdated(7, "target", kTap));
    EXPECT_FALSE(echoes.isOutdated(7, "target", kNothing));
}

TEST(WriteEchoes, AreNotWhatAnotherProgramWrites) {
    WriteEchoes echoes;
    echoes.expect(7, "target", kTap);
    EXPECT_FALSE(echoes.isOutdated(7, "target", kSpeakers));
    EXPECT_FALSE(echoes.isOutdated(7, "target", kTap));
}

TEST(WriteEchoes, ComeOnceForAWriteThatIsRepeatedAgainstAnotherProgram) {
    WriteEchoes echoes;
    echoes.expect(7, "target", kTap);
    EXPECT_FALSE(echoes.isOutdated(7, "target", kSpeakers));
    echoes.expect(7, "target", kTap);
    EXPECT_FALSE(echoes.isOutdated(7, "target", kTap));
    EXPECT_FALSE(echoes.isOutdated(7, "target", kTap)) << "nothing is waited for any more";
}

TEST(WriteEchoes, OfOtherKeysAndObjectsAreWaitedForApart) {
    WriteEchoes echoes;
    echoes.expect(7, "target", kTap);
    echoes.expect(7, "target", kNothing);
    EXPECT_FALSE(echoes.isOutdated(7, "choice", kTap));
    EXPECT_FALSE(echoes.isOutdated(8, "target", kTap));
    EXPECT_TRUE(echoes.isOutdated(7, "target", kTap));
}

TEST(WriteEchoes, ThatNeverCameAreNotWaitedForOnceALaterOneIsThere) {
    WriteEchoes echoes;
    echoes.expect(7, "target", kSpeakers);
    echoes.expect(7, "target", kTap);
    EXPECT_FALSE(echoes.isOutdated(7, "target", kTap));
    EXPECT_FALSE(echoes.isOutdated(7, "target", kSpeakers));
}

TEST(WriteEchoes, AreNotWaitedForOnceTheirObjectHasGone) {
    WriteEchoes echoes;
    for (const std::uint32_t subject : {7U, 8U}) {
        echoes.expect(subject, "target", kTap);
        echoes.expect(subject, "target", kNothing);
    }
    echoes.forget(7);
    EXPECT_FALSE(echoes.isOutdated(7, "target", kTap));
    EXPECT_TRUE(echoes.isOutdated(8, "target", kTap));
    echoes.clear();
    EXPECT_FALSE(echoes.isOutdated(8, "target", kNothing));
}

} // namespace
} // namespace orvanta::test
