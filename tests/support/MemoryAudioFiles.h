#pragma once

#include "core/platform/AudioFileWriter.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace orvanta::test {

/// An audio file that exists in memory only.
struct MemoryAudioFile {
    AudioFileSettings settings;
    std::vector<std::vector<float>> channels;
    std::vector<std::size_t> writes; ///< frames of each, failed ones included
    bool isFinished = false;

    /// Frame by frame.
    [[nodiscard]] std::vector<float> interleaved() const;
};

/// Makes audio files in memory, and fails when it is told to. Safe from all threads.
class MemoryAudioFiles final : public AudioFileWriter {
public:
    std::unique_ptr<AudioFile> create(const std::filesystem::path& path,
                                      const AudioFileSettings& settings,
                                      std::string& outReason) override;

    /// The next file is refused for this reason.
    void refuseNext(std::string reason);
    /// The next writes of any file fail, as many as there are reasons.
    void failNextWrites(std::vector<std::string> reasons);
    /// The next file that is finished fails at it for this reason.
    void failNextFinish(std::string reason);
    /// Called before anything else of every creation or write, outside every lock: a place to make
    /// the disk slow.
    void beforeEachCreate(std::function<void()> call);
    void beforeEachWrite(std::function<void()> call);

    [[nodiscard]] bool exists(const std::filesystem::path& path) const;
    /// As it is now; an empty one where there is none.
    [[nodiscard]] MemoryAudioFile file(const std::filesystem::path& path) const;
    [[nodiscard]] std::size_t count() const;

private:
    class OpenFile;

    void call(const std::function<void()>& member) const;

    mutable std::mutex mutex_;
    std::map<std::filesystem::path, std::shared_ptr<MemoryAudioFile>> files_;
    std::vector<std::string> createFailures_;
    std::vector<std::string> writeFailures_;
    std::vector<std::string> finishFailures_;
    std::function<void()> beforeCreate_;
    std::function<void()> beforeWrite_;
};

} // namespace orvanta::test
