// A machine that loses its power: the disk has what was synced, and of the rest any part.

#include "tests/platform/linux/defaults/support/DefaultsFolder.h"
#include "tests/platform/linux/defaults/support/FileLayer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <map>
#include <mutex>
#include <random>

namespace orvanta {
namespace {

namespace fs = std::filesystem;

/// What the power leaves of each file, by its name.
using Disk = std::map<std::string, std::string>;

struct PowerCut {
    Disk disk;
    int acknowledged = 0; ///< the newest value that synchronize has told of
    int set = 0;          ///< the newest value
};

/// A disk that may keep or lose each write until it is synced, and half of the last one. Before
/// every operation it looks at what would be left if the power went now.
class UnsyncedWrites final : public test::FileObserver {
public:
    std::atomic<int> acknowledged = 0;
    std::atomic<int> set = 0;

    /// Safe when nobody writes any more.
    [[nodiscard]] const std::vector<PowerCut>& cuts() const { return cuts_; }

    int allow(test::FileOperation operation, const std::string& path) override {
        const std::scoped_lock guard(mutex_);
        for (int variant = 0; variant < 3; ++variant)
            cuts_.push_back({leftOver(variant), acknowledged, set});
        return FileObserver::allow(operation, path);
    }

    void wrote(const std::string& path, std::int64_t offset, std::string_view bytes) override {
        const std::scoped_lock guard(mutex_);
        files_[path].unsynced.push_back({static_cast<std::size_t>(offset), std::string(bytes), {}});
    }

    void truncated(const std::string& path, std::int64_t size) override {
        const std::scoped_lock guard(mutex_);
        files_[path].unsynced.push_back({0, {}, static_cast<std::size_t>(size)});
    }

    void synced(const std::string& path) override {
        const std::scoped_lock guard(mutex_);
        File& file = files_[path];
        for (const Change& change : file.unsynced)
            apply(change, file.durable);
        file.unsynced.clear();
        file.isListed = true;
    }

    void removed(const std::string& path) override {
        const std::scoped_lock guard(mutex_);
        files_.erase(path);
    }

private:
    struct Change {
        std::size_t offset;
        std::string bytes;
        std::optional<std::size_t> size;
    };

    struct File {
        std::string durable;
        std::vector<Change> unsynced;
        /// In its folder for good.
        bool isListed = false;
    };

    static void apply(const Change& change, std::string& content) {
        if (change.size) {
            content.resize(*change.size);
            return;
        }
        content.resize(std::max(content.size(), change.offset + change.bytes.size()));
        content.replace(change.offset, change.bytes.size(), change.bytes);
    }

    /// Variant 0 loses all that is not synced, 1 keeps the beginning, 2 keeps any of it; both may
    /// tear a write.
    Disk leftOver(int variant) {
        Disk disk;
        for (const auto& [path, file] : files_) {
            if (!file.isListed && variant == 0)
                continue;
            std::string content = file.durable;
            const std::size_t kept = random_() % (file.unsynced.size() + 1);
            for (std::size_t k = 0; k < file.unsynced.size() && variant != 0; ++k) {
                if (variant == 1 ? k > kept : random_() % 2 == 0)
                    continue;
                Change change = file.unsynced[k];
                if (random_() % 4 == 0)
                    change.bytes.resize(random_() % (change.bytes.size() + 1));
                apply(change, content);
            }
            disk.emplace(fs::path(path).filename(), std::move(content));
        }
        return disk;
    }

    std::mutex mutex_;
    std::map<std::string, File> files_;
    std::vector<PowerCut> cuts_;
    std::mt19937 random_{1};
};

struct PowerCutTest : testing::Test, test::DefaultsFolder {
    UnsyncedWrites writes;
    test::FileLayer layer{writes};
    int generation = 0;

    /// A run that sets ever newer values of several pages, and makes sure of one now and then.
    void runThroughTheLayer(int values) {
        SQLiteUserDefaults defaults(place(layer.name()), clock, log, SavingPace{Seconds(0)});
        for (int k = 0; k < values; ++k) {
            ++generation;
            writes.set = generation;
            defaults.setData("value", std::to_string(generation) + std::string(6000, '.'));
            if (k % 3 == 2) {
                ASSERT_TRUE(defaults.synchronize());
                writes.acknowledged = generation;
            }
        }
        ASSERT_TRUE(defaults.synchronize());
        writes.acknowledged = generation;
    }

    /// The value that the next run finds.
    static int generationAfter(const PowerCut& cut) {
        DefaultsFolder after;
        fs::create_directories(after.folder);
        for (const auto& [name, content] : cut.disk)
            std::ofstream(after.folder / name, std::ios::binary) << content;
        test::FileObserver nobody;
        const test::FileLayer layer(nobody);
        SystemFileOperations files;
        DefaultsStorage storage(after.place(layer.name()), files, after.clock, after.log);
        const DefaultsValues values = storage.find().values;
        EXPECT_TRUE(after.log.texts().empty()) << testing::PrintToString(after.log.texts());
        const auto found = values.find("value");
        return found != values.end() ? std::stoi(*std::get<DefaultsData>(found->second).bytes) : 0;
    }
};

TEST_F(PowerCutTest, LeavesAReadableDatabaseWithAllThatWasAcknowledged) {
    for (int run = 0; run < 4; ++run)
        runThroughTheLayer(9);
    ASSERT_GT(writes.cuts().size(), 300U);
    for (const PowerCut& cut : writes.cuts()) {
        const int found = generationAfter(cut);
        EXPECT_GE(found, cut.acknowledged);
        EXPECT_LE(found, cut.set);
    }
}

} // namespace
} // namespace orvanta
