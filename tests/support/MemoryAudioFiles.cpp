#include "tests/support/MemoryAudioFiles.h"

#include <optional>
#include <utility>

namespace orvanta::test {
namespace {

std::optional<std::string> takeFirst(std::vector<std::string>& texts) {
    if (texts.empty())
        return std::nullopt;
    std::string first = std::move(texts.front());
    texts.erase(texts.begin());
    return first;
}

} // namespace

std::vector<float> MemoryAudioFile::interleaved() const {
    std::vector<float> samples;
    for (std::size_t frame = 0; !channels.empty() && frame < channels[0].size(); ++frame)
        for (const auto& channel : channels)
            samples.push_back(channel[frame]);
    return samples;
}

class MemoryAudioFiles::OpenFile final : public AudioFile {
public:
    OpenFile(MemoryAudioFiles& owner, std::shared_ptr<MemoryAudioFile> file)
        : owner_(owner), file_(std::move(file)) {}

    ~OpenFile() override {
        const std::scoped_lock guard(owner_.mutex_);
        file_->isFinished = true;
    }

    std::optional<std::string> write(std::span<const float* const> channels,
                                     std::size_t frames) override {
        owner_.call(owner_.beforeWrite_);
        const std::scoped_lock guard(owner_.mutex_);
        file_->writes.push_back(frames);
        if (auto reason = takeFirst(owner_.writeFailures_))
            return reason;
        for (std::size_t index = 0; index < channels.size(); ++index)
            file_->channels.at(index).insert(file_->channels.at(index).end(), channels[index],
                                             channels[index] + frames);
        return std::nullopt;
    }

    std::optional<std::string> finish() override {
        const std::scoped_lock guard(owner_.mutex_);
        file_->isFinished = true;
        return takeFirst(owner_.finishFailures_);
    }

private:
    MemoryAudioFiles& owner_;
    const std::shared_ptr<MemoryAudioFile> file_;
};

std::unique_ptr<AudioFile> MemoryAudioFiles::create(const std::filesystem::path& path,
                                                    const AudioFileSettings& settings,
                                                    std::string& outReason) {
    call(beforeCreate_);
    const std::scoped_lock guard(mutex_);
    if (auto reason = takeFirst(createFailures_)) {
        outReason = *reason;
        return nullptr;
    }
    auto file = std::make_shared<MemoryAudioFile>();
    file->settings = settings;
    file->channels.resize(static_cast<std::size_t>(settings.channels));
    if (!files_.emplace(path, file).second) {
        outReason = "File exists";
        return nullptr;
    }
    return std::make_unique<OpenFile>(*this, std::move(file));
}

void MemoryAudioFiles::call(const std::function<void()>& member) const {
    std::function<void()> copy;
    {
        const std::scoped_lock guard(mutex_);
        copy = member;
    }
    if (copy)
        copy();
}

void MemoryAudioFiles::refuseNext(std::string reason) {
    const std::scoped_lock guard(mutex_);
    createFailures_.push_back(std::move(reason));
}

void MemoryAudioFiles::failNextWrites(std::vector<std::string> reasons) {
    const std::scoped_lock guard(mutex_);
    writeFailures_ = std::move(reasons);
}

void MemoryAudioFiles::failNextFinish(std::string reason) {
    const std::scoped_lock guard(mutex_);
    finishFailures_.push_back(std::move(reason));
}

void MemoryAudioFiles::beforeEachCreate(std::function<void()> call) {
    const std::scoped_lock guard(mutex_);
    beforeCreate_ = std::move(call);
}

void MemoryAudioFiles::beforeEachWrite(std::function<void()> call) {
    const std::scoped_lock guard(mutex_);
    beforeWrite_ = std::move(call);
}

bool MemoryAudioFiles::exists(const std::filesystem::path& path) const {
    const std::scoped_lock guard(mutex_);
    return files_.contains(path);
}

MemoryAudioFile MemoryAudioFiles::file(const std::filesystem::path& path) const {
    const std::scoped_lock guard(mutex_);
    const auto found = files_.find(path);
    return found == files_.end() ? MemoryAudioFile{} : *found->second;
}

std::size_t MemoryAudioFiles::count() const {
    const std::scoped_lock guard(mutex_);
    return files_.size();
}

} // namespace orvanta::test
