#include "platform/media/SampleTable.h"

namespace orvanta::media {
namespace {

void append(std::vector<SampleTable::Run>& runs, SampleTable::Run run) {
    if (run.packets == 0)
        return;
    if (!runs.empty() && runs.back().frames == run.frames)
        runs.back().packets += run.packets;
    else
        runs.push_back(run);
}

} // namespace

void SampleTable::add(std::int64_t offset, std::int64_t start, std::int64_t end,
                      std::span<const std::uint32_t> packetBytes) {
    chunks_.push_back({offset, start, end, static_cast<std::uint32_t>(packetBytes.size())});
    packetBytes_.insert(packetBytes_.end(), packetBytes.begin(), packetBytes.end());
}

std::int64_t SampleTable::start() const noexcept {
    return chunks_.empty() ? 0 : chunks_.front().start;
}

std::int64_t SampleTable::end() const noexcept {
    return chunks_.empty() ? 0 : chunks_.back().end;
}

std::vector<SampleTable::Run> SampleTable::runs() const {
    std::vector<Run> runs;
    for (std::size_t index = 0; index < chunks_.size(); ++index) {
        const Chunk& chunk = chunks_[index];
        const bool isLast = index + 1 == chunks_.size();
        const std::int64_t until = isLast ? chunk.end : chunks_[index + 1].start;
        const std::uint32_t before = chunk.packets - 1;
        const std::int64_t last = chunk.start + std::int64_t{before} * packetFrames_;
        append(runs, {before, packetFrames_});
        append(runs, {1, static_cast<std::uint32_t>(until - last)});
    }
    return runs;
}

} // namespace orvanta::media
