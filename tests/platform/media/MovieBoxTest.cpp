#include "platform/media/MovieBox.h"

#include "platform/media/AACEncoder.h"
#include "platform/media/FragmentMuxer.h"
#include "tests/platform/media/support/M4AReader.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <fstream>

namespace orvanta::media {
namespace {

using test::M4AContent;
using test::M4AEdit;
using test::M4APacket;
using testing::ElementsAre;

constexpr std::uint32_t kPacketFrames = 1024;

/// What a finished file says of a table.
M4AContent finishedMovie(const SampleTable& table) {
    std::string reason;
    const auto encoder =
        AACEncoder::open({AudioFileSettings::Coding::aacMPEG4, 48000, 2, 256000}, reason);
    const auto muxer = FragmentMuxer::open(encoder->context(), reason);
    const Bytes beginning = muxer->takeBeginning();
    MP4BoxWriter writer;
    writeFinishedMovie(writer, boxesIn(beginning).at(1), table);

    const test::TemporaryDirectory folder;
    const auto path = folder.path() / "movie";
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(writer.written().data()),
               static_cast<std::streamsize>(writer.written().size()));
    return test::readM4A(path);
}

TEST(MovieBox, TellsPlaceAndTimeOfEveryPacket) {
    SampleTable table(kPacketFrames);
    table.add(700, -1024, 1024, std::vector<std::uint32_t>{50, 60});
    table.add(1000, 1024, 1500, std::vector<std::uint32_t>{70});
    const M4AContent movie = finishedMovie(table);
    EXPECT_FALSE(movie.isFragmented);
    EXPECT_THAT(movie.packets,
                ElementsAre(M4APacket{700, 50, 0, 1024}, M4APacket{750, 60, 1024, 1024},
                            M4APacket{1000, 70, 2048, 476}));
    EXPECT_THAT(movie.edits, ElementsAre(M4AEdit{1500, 1024}));
    EXPECT_EQ(movie.movieDuration, 1500);
    EXPECT_EQ(movie.trackDuration, 1500);
    EXPECT_EQ(movie.mediaDuration, 2524);
}

TEST(MovieBox, LetsTimePassWhereAFragmentIsMissing) {
    SampleTable table(kPacketFrames);
    table.add(700, -1024, 1024, std::vector<std::uint32_t>{50, 60});
    table.add(900, 48000, 50048, std::vector<std::uint32_t>{70, 80});
    const M4AContent movie = finishedMovie(table);
    ASSERT_EQ(movie.packets.size(), 4U);
    EXPECT_EQ(movie.packets[1].frames, 48000U);
    EXPECT_EQ(movie.packets[2].start, 48000 + 1024);
    EXPECT_EQ(movie.movieDuration, 50048);
}

TEST(MovieBox, BeginsWithSilenceWhereTheFirstFragmentIsMissing) {
    SampleTable table(kPacketFrames);
    table.add(700, 24000, 26048, std::vector<std::uint32_t>{50, 60});
    const M4AContent movie = finishedMovie(table);
    EXPECT_THAT(movie.edits, ElementsAre(M4AEdit{24000, -1}, M4AEdit{2048, 0}));
    EXPECT_EQ(movie.packets.front().start, 0);
    EXPECT_EQ(movie.movieDuration, 26048);
    EXPECT_EQ(movie.mediaDuration, 2048);
}

TEST(MovieBox, CountsBeyond32BitsWhereItMust) {
    constexpr std::int64_t kDays = 48000LL * 3600 * 48;
    SampleTable table(kPacketFrames);
    table.add(700, -1024, 0, std::vector<std::uint32_t>{50});
    constexpr std::int64_t kHalfWay = kDays / 2;
    table.add(5'000'000'000, kHalfWay, kHalfWay + 1024, std::vector<std::uint32_t>{60});
    table.add(9'000'000'000, kDays - 1024, kDays, std::vector<std::uint32_t>{70});
    const M4AContent movie = finishedMovie(table);
    EXPECT_EQ(movie.movieDuration, kDays);
    EXPECT_EQ(movie.trackDuration, kDays);
    EXPECT_EQ(movie.mediaDuration, kDays + 1024);
    EXPECT_THAT(movie.edits, ElementsAre(M4AEdit{kDays, 1024}));
    EXPECT_EQ(movie.packets.back(), (M4APacket{9'000'000'000, 70, kDays, 1024}));
    EXPECT_EQ(movie.packets[1].offset, 5'000'000'000U);
}

} // namespace
} // namespace orvanta::media
