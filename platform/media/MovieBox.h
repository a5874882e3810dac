#pragma once

#include "platform/media/Bytes.h"
#include "platform/media/MP4Box.h"
#include "platform/media/SampleTable.h"

namespace orvanta::media {

/// The two forms of the "moov" box of one recording, both made from the one that the muxer writes
/// for a file in fragments with nothing in it yet. Its time scales count frames.

/// For as long as it grows: says that the first `primingFrames` are not to be heard.
void writeGrowingMovie(MP4BoxWriter& writer, const MP4Box& movie, std::uint32_t primingFrames);

/// For the finished file: says all there is to know about its packets, and nothing of fragments.
void writeFinishedMovie(MP4BoxWriter& writer, const MP4Box& movie, const SampleTable& table);

} // namespace orvanta::media
