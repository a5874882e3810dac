#include "platform/media/M4AFile.h"

#include "platform/media/MovieBox.h"

#include <new>
#include <utility>

namespace orvanta::media {
namespace {

/// Fragments a second. The fragment in the making and what the encoder holds back (two packets)
/// stay below a second of audio even at AAC's lowest rate.
constexpr int kFragmentsPerSecond = 2;

MP4Box find(ByteView bytes, std::string_view type) {
    for (const MP4Box& box : boxesIn(bytes))
        if (box.type == type)
            return box;
    return {};
}

/// The same but for what is not to be heard.
Bytes growingBeginning(ByteView beginning, const AVCodecContext& encoder) {
    MP4BoxWriter writer;
    for (const MP4Box& box : boxesIn(beginning))
        if (box.type == "moov")
            writeGrowingMovie(writer, box, static_cast<std::uint32_t>(encoder.initial_padding));
        else
            writer.copy(box);
    return writer.written();
}

/// The beginning of a box of samples that takes `size` bytes in all. A "moov" box is never shorter
/// than this.
Bytes dataHeader(std::int64_t size) {
    constexpr std::uint32_t kSizeFollows = 1;
    MP4BoxWriter writer;
    writer.number32(kSizeFollows);
    writer.letters("mdat");
    writer.number64(static_cast<std::uint64_t>(size));
    return writer.written();
}

} // namespace

std::unique_ptr<M4AFile> M4AFile::create(const std::filesystem::path& path,
                                         const AudioFileSettings& settings,
                                         std::string& outReason) {
    auto encoder = AACEncoder::open(settings, outReason);
    if (!encoder)
        return nullptr;
    auto muxer = FragmentMuxer::open(encoder->context(), outReason);
    if (!muxer)
        return nullptr;
    auto file = NewFile::create(path, outReason);
    if (!file)
        return nullptr;
    Bytes beginning = muxer->takeBeginning();
    if (auto reason = file->append(growingBeginning(beginning, encoder->context()))) {
        outReason = *std::move(reason);
        file->remove();
        return nullptr;
    }
    return std::unique_ptr<M4AFile>(
        new M4AFile(std::move(encoder), std::move(muxer), std::move(file), std::move(beginning)));
}

M4AFile::M4AFile(std::unique_ptr<AACEncoder> encoder, std::unique_ptr<FragmentMuxer> muxer,
                 std::unique_ptr<NewFile> file, Bytes beginning)
    : encoder_(std::move(encoder)),
      muxer_(std::move(muxer)),
      file_(std::move(file)),
      beginning_(std::move(beginning)),
      take_([this](AVPacket& packet) { take(packet); }),
      table_(static_cast<std::uint32_t>(encoder_->context().frame_size)) {}

M4AFile::~M4AFile() {
    try {
        if (!isFinished_)
            finish();
    } catch (const std::bad_alloc&) {
        // In fragments, as it is, the file can be played too.
        return;
    }
}

std::optional<std::string> M4AFile::write(std::span<const float* const> channels,
                                          std::size_t frames) {
    keep(encoder_->encode(channels, frames, take_));
    return std::exchange(failure_, std::nullopt);
}

void M4AFile::take(AVPacket& packet) {
    // A fragment has no gaps: what one packet leaves missing lies between two of them.
    if (packet.pts != fragmentEnd_)
        endFragment();
    if (packetBytes_.empty())
        fragmentStart_ = packet.pts;
    const auto bytes = static_cast<std::uint32_t>(packet.size);
    const std::int64_t end = packet.pts + packet.duration;
    if (auto reason = muxer_->add(packet)) {
        keep(std::move(reason));
        return;
    }
    packetBytes_.push_back(bytes);
    fragmentEnd_ = end;
    if ((fragmentEnd_ - fragmentStart_) * kFragmentsPerSecond >= encoder_->context().sample_rate)
        endFragment();
}

void M4AFile::endFragment() {
    if (packetBytes_.empty())
        return;
    const Bytes fragment = muxer_->takeFragment();
    const std::int64_t samplesAt = find(fragment, "mdat").content.data() - fragment.data();
    const std::int64_t offset = file_->size();
    if (auto reason = file_->append(fragment))
        keep(std::move(reason));
    else
        table_.add(offset + samplesAt, fragmentStart_, fragmentEnd_, packetBytes_);
    packetBytes_.clear();
}

std::optional<std::string> M4AFile::finish() {
    isFinished_ = true;
    keep(encoder_->finish(take_));
    endFragment();
    if (!table_.isEmpty())
        keep(writeTable());
    return std::exchange(failure_, std::nullopt);
}

std::optional<std::string> M4AFile::writeTable() {
    const MP4Box movie = find(beginning_, "moov");
    MP4BoxWriter writer;
    writeFinishedMovie(writer, movie, table_);

    constexpr std::int64_t kBoxHeaderBytes = 8;
    const std::int64_t movieAt = movie.content.data() - beginning_.data() - kBoxHeaderBytes;
    const std::int64_t endOfSamples = file_->size();
    if (auto reason = file_->append(writer.written()))
        return reason;
    // Until this moment the old table and its fragments count, from here on the new one.
    auto reason = file_->write(movieAt, dataHeader(endOfSamples - movieAt));
    if (reason)
        file_->shrinkTo(endOfSamples);
    return reason;
}

void M4AFile::keep(std::optional<std::string> reason) {
    if (reason && !failure_)
        failure_ = std::move(reason);
}

} // namespace orvanta::media
