#include "app/update/SoftwareUpdater.h"

#include "platform/runloop/VirtualRunLoop.h"
#include "tests/app/update/support/Publisher.h"
#include "tests/app/update/support/ScriptedFetcher.h"
#include "tests/support/FileContent.h"
#include "tests/support/RecordingFileViewer.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/RecordingURLOpener.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Kind = UpdateNews::Kind;

constexpr Seconds kDay{86'400.0};
const std::string kFeed = "https://updates.example.org/appcast.xml";
const std::string kFile = "https://updates.example.org/Orvanta-2.0.tar.xz";
const std::string kProgram = "the program, version 2";

/// A feed with these items.
std::string feedOf(const std::string& items) {
    return "<rss xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>" +
           items + "</channel></rss>";
}

/// An item with a page, and what else it is given.
std::string itemOf(const std::string& version, const std::string& rest = {}) {
    return "<item><link>https://example.org/news</link><sparkle:version>" + version +
           "</sparkle:version>" + rest + "</item>";
}

class ASoftwareUpdater : public testing::Test {
protected:
    ASoftwareUpdater() { make(publisher_.publicKey()); }

    void make(const std::string& publicKey, const std::string& feed = kFeed) {
        updater_.emplace(SoftwareUpdater::Settings{.feedURL = feed,
                                                   .publicKey = publicKey,
                                                   .currentVersion = "1.0",
                                                   .downloadFolder = folder_},
                         world_);
    }

    /// Starts, with nothing new in the feed.
    void startUpToDate() {
        updater_->start();
        fetcher_.deliver(feedOf(itemOf("1.0")));
    }

    /// A feed with our file.
    [[nodiscard]] std::string feedWithFile(const std::string& length = "0") const {
        return feedOf(itemOf("2.0", "<enclosure url=\"" + kFile + "\" length=\"" + length +
                                        "\" sparkle:edSignature=\"" +
                                        publisher_.signatureOf(kProgram) + "\"/>"));
    }

    void startWithFile() {
        updater_->start();
        fetcher_.deliver(feedWithFile());
    }

    [[nodiscard]] bool canCheck() const { return updater_->canCheckForUpdates.get(); }

    [[nodiscard]] const UpdateNews& news() const { return updater_->news.get(); }

    [[nodiscard]] std::vector<std::string> filesInFolder() const {
        std::vector<std::string> names;
        if (fs::exists(folder_))
            for (const auto& entry : fs::directory_iterator(folder_))
                names.push_back(entry.path().filename());
        return names;
    }

    const Publisher publisher_;
    const TemporaryDirectory directory_;
    const fs::path folder_ = directory_.path() / "Downloads";
    ScriptedFetcher fetcher_;
    VirtualRunLoop runLoop_;
    RecordingFileViewer viewer_;
    RecordingURLOpener opener_;
    RecordingLog log_;
    const SoftwareUpdater::World world_{.fetcher = fetcher_,
                                        .mainRunLoop = runLoop_,
                                        .fileViewer = viewer_,
                                        .urlOpener = opener_,
                                        .systemLog = log_};
    std::optional<SoftwareUpdater> updater_;
};

TEST_F(ASoftwareUpdater, CannotCheckBeforeItsStart) {
    EXPECT_FALSE(canCheck());
    updater_->checkForUpdates();
    runLoop_.advance(kDay * 3);
    EXPECT_THAT(fetcher_.requests, IsEmpty());
}

TEST_F(ASoftwareUpdater, ChecksAtItsStartAndIsReadyForTheUserAfterwards) {
    updater_->start();
    ASSERT_EQ(fetcher_.requests.size(), 1U);
    EXPECT_EQ(fetcher_.requests[0].url, kFeed);
    EXPECT_FALSE(canCheck());
    fetcher_.deliver(feedOf(itemOf("1.0")));
    EXPECT_TRUE(canCheck());
    EXPECT_EQ(news(), UpdateNews());
}

TEST_F(ASoftwareUpdater, ChecksOnceADay) {
    startUpToDate();
    runLoop_.advance(kDay - Seconds(1));
    EXPECT_EQ(fetcher_.requests.size(), 1U);
    runLoop_.advance(Seconds(1));
    EXPECT_EQ(fetcher_.requests.size(), 2U);
    EXPECT_FALSE(canCheck());
    fetcher_.deliver(feedOf({}));
    EXPECT_TRUE(canCheck());
    runLoop_.advance(kDay);
    EXPECT_EQ(fetcher_.requests.size(), 3U);
}

TEST_F(ASoftwareUpdater, WaitsForACheckThatTakesLongerThanADay) {
    updater_->start();
    runLoop_.advance(kDay * 2);
    EXPECT_EQ(fetcher_.requests.size(), 1U);
}

TEST_F(ASoftwareUpdater, NeverChecksWithoutAFeedOrAKey) {
    const std::string key = publisher_.publicKey();
    for (const auto& [usedKey, feed] : {std::pair<std::string, std::string>(key, ""),
                                        {key, "http://example.org/feed"},
                                        {key, "file:///feed"},
                                        {"", kFeed},
                                        {"no key", kFeed}}) {
        make(usedKey, feed);
        updater_->start();
        updater_->checkForUpdates();
        runLoop_.advance(kDay * 3);
        EXPECT_FALSE(canCheck()) << feed;
        EXPECT_THAT(fetcher_.requests, IsEmpty()) << feed;
        EXPECT_EQ(news(), UpdateNews());
    }
}

TEST_F(ASoftwareUpdater, SaysNothingOfACheckThatNobodyAskedForAndThatFails) {
    updater_->start();
    fetcher_.fail("The server is asleep.");
    EXPECT_EQ(news(), UpdateNews());
    EXPECT_TRUE(canCheck());
    EXPECT_TRUE(log_.has(LogLevel::error, "Update check failed: The server is asleep."));
    runLoop_.advance(kDay);
    fetcher_.deliver("no feed");
    EXPECT_EQ(news(), UpdateNews());
}

TEST_F(ASoftwareUpdater, SaysWhatCameOfACheckThatTheUserAskedFor) {
    startUpToDate();
    updater_->checkForUpdates();
    EXPECT_FALSE(canCheck());
    fetcher_.deliver(feedOf(itemOf("1.0")));
    EXPECT_EQ(news().kind, Kind::upToDate);
    EXPECT_EQ(news().sentence, "Orvanta 1.0 is the newest version.");

    updater_->checkForUpdates();
    fetcher_.fail("The server is asleep.");
    EXPECT_EQ(news().kind, Kind::failed);
    EXPECT_EQ(news().sentence, "It could not be found out whether there is a newer version: "
                               "The server is asleep.");

    updater_->checkForUpdates();
    fetcher_.deliver("no feed");
    EXPECT_EQ(news().kind, Kind::failed);
    EXPECT_THAT(news().sentence, HasSubstr("What the server has sent is no list of versions."));
    EXPECT_TRUE(canCheck());
}

TEST_F(ASoftwareUpdater, ChecksOnceHoweverOftenTheUserAsksMeanwhile) {
    startUpToDate();
    updater_->checkForUpdates();
    updater_->checkForUpdates();
    EXPECT_EQ(fetcher_.requests.size(), 2U);
}

TEST_F(ASoftwareUpdater, OffersANewerVersionWhoeverAsked) {
    updater_->start();
    fetcher_.deliver(feedOf(itemOf("2.0") + itemOf("1.5")));
    EXPECT_EQ(news().kind, Kind::offered);
    EXPECT_EQ(news().sentence, "Orvanta 2.0 is available. You have 1.0.");
    ASSERT_TRUE(news().offer);
    EXPECT_EQ(news().offer->version, "2.0");
    updater_->checkForUpdates();
    fetcher_.deliver(feedOf(itemOf("3.0")));
    EXPECT_EQ(news().offer->version, "3.0");
    updater_->showPage();
    EXPECT_THAT(opener_.opened, ElementsAre("https://example.org/news"));
}

TEST_F(ASoftwareUpdater, TakesBackWhatTheFeedTakesBack) {
    startWithFile();
    runLoop_.advance(kDay);
    fetcher_.deliver(feedOf(itemOf("1.0")));
    EXPECT_EQ(news(), UpdateNews());
}

TEST_F(ASoftwareUpdater, OffersWhatWasDismissedAgainOnlyWhenTheUserAsks) {
    startWithFile();
    updater_->dismiss();
    EXPECT_EQ(news(), UpdateNews());
    runLoop_.advance(kDay);
    fetcher_.deliver(feedWithFile());
    EXPECT_EQ(news(), UpdateNews());
    runLoop_.advance(kDay);
    fetcher_.deliver(feedOf(itemOf("3.0")));
    EXPECT_EQ(news().kind, Kind::offered) << "that is another one";
    updater_->dismiss();
    updater_->checkForUpdates();
    fetcher_.deliver(feedOf(itemOf("3.0")));
    EXPECT_EQ(news().kind, Kind::offered);
}

TEST_F(ASoftwareUpdater, DownloadsTheSignedFileAndShowsIt) {
    startWithFile();
    updater_->download();
    EXPECT_EQ(news().kind, Kind::downloading);
    EXPECT_FALSE(canCheck());
    EXPECT_EQ(fetcher_.requests.back().url, kFile);
    updater_->showFile();
    EXPECT_THAT(viewer_.shown, IsEmpty()) << "there is none yet";
    fetcher_.deliver(kProgram);
    EXPECT_EQ(news().kind, Kind::downloaded);
    EXPECT_EQ(news().file, folder_ / "Orvanta-2.0.tar.xz");
    EXPECT_EQ(fileContent(news().file), kProgram);
    EXPECT_THAT(filesInFolder(), ElementsAre("Orvanta-2.0.tar.xz"));
    constexpr auto kRun = fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
    EXPECT_EQ(fs::status(news().file).permissions() & kRun, fs::perms::none);
    EXPECT_TRUE(canCheck());
    EXPECT_THAT(viewer_.shown, IsEmpty()) << "the user is asked";
    updater_->showFile();
    EXPECT_THAT(viewer_.shown, ElementsAre(news().file));
}

TEST_F(ASoftwareUpdater, KeepsNothingThatIsNotSigned) {
    startWithFile();
    updater_->download();
    fetcher_.deliver(kProgram + ", and something else");
    EXPECT_EQ(news().kind, Kind::failed);
    EXPECT_EQ(news().sentence, "Orvanta 2.0 could not be downloaded: The file was not signed by "
                               "its makers, so it was thrown away.");
    EXPECT_THAT(filesInFolder(), IsEmpty());
    updater_->showFile();
    EXPECT_THAT(viewer_.shown, IsEmpty());
}

TEST_F(ASoftwareUpdater, KeepsNothingThatSomebodyElseHasSigned) {
    make(Publisher().publicKey());
    startWithFile();
    updater_->download();
    fetcher_.deliver(kProgram);
    EXPECT_EQ(news().kind, Kind::failed);
    EXPECT_THAT(filesInFolder(), IsEmpty());
}

TEST_F(ASoftwareUpdater, MayTryADownloadAgainThatHasFailed) {
    startWithFile();
    updater_->download();
    fetcher_.fail("The line is dead.");
    EXPECT_EQ(news().sentence, "Orvanta 2.0 could not be downloaded: The line is dead.");
    EXPECT_TRUE(canCheck());
    updater_->download();
    fetcher_.deliver(kProgram);
    EXPECT_EQ(news().kind, Kind::downloaded);
}

TEST_F(ASoftwareUpdater, SaysWhyAFileCannotBeKept) {
    std::ofstream(folder_) << "in the way";
    startWithFile();
    updater_->download();
    fetcher_.deliver(kProgram);
    EXPECT_EQ(news().kind, Kind::failed);
    EXPECT_TRUE(canCheck());

    updater_.emplace(SoftwareUpdater::Settings{.feedURL = kFeed,
                                               .publicKey = publisher_.publicKey(),
                                               .currentVersion = "1.0"},
                     world_);
    startWithFile();
    updater_->download();
    fetcher_.deliver(kProgram);
    EXPECT_THAT(news().sentence, HasSubstr("There is no folder for downloads."));
}

TEST_F(ASoftwareUpdater, AsksForNoMoreThanTheFeedSaysTheFileHas) {
    updater_->start();
    fetcher_.deliver(feedWithFile("22"));
    updater_->download();
    EXPECT_EQ(fetcher_.requests.back().maxBytes, 22);
    fetcher_.fail("It is larger than it should be.");
    updater_->checkForUpdates();
    fetcher_.deliver(feedWithFile("999999999999"));
    updater_->download();
    EXPECT_LT(fetcher_.requests.back().maxBytes, 1'000'000'000);
}

TEST_F(ASoftwareUpdater, DownloadsNothingThatIsNotOffered) {
    startUpToDate();
    updater_->download();
    updater_->showFile();
    updater_->showPage();
    updater_->checkForUpdates();
    fetcher_.deliver(feedOf(itemOf("2.0")));
    updater_->download();
    EXPECT_EQ(fetcher_.requests.size(), 2U) << "it has a page only";
    EXPECT_EQ(news().kind, Kind::offered);
    EXPECT_THAT(opener_.opened, IsEmpty());
}

TEST_F(ASoftwareUpdater, LetsADownloadEndBeforeItChecksAgain) {
    startWithFile();
    updater_->download();
    updater_->download();
    updater_->dismiss();
    runLoop_.advance(kDay * 2);
    updater_->checkForUpdates();
    EXPECT_EQ(fetcher_.requests.size(), 2U);
    EXPECT_EQ(news().kind, Kind::downloading);
    fetcher_.deliver(kProgram);
    runLoop_.advance(kDay);
    fetcher_.deliver(feedWithFile());
    EXPECT_EQ(news().kind, Kind::downloaded) << "which is more than that it is there";
    updater_->download();
    EXPECT_EQ(fetcher_.requests.size(), 3U);
}

TEST_F(ASoftwareUpdater, TellsObserversOfWhatChangesOnly) {
    std::vector<bool> told;
    const auto observation =
        updater_->canCheckForUpdates.observe([&](bool canCheck) { told.push_back(canCheck); });
    startWithFile();
    updater_->download();
    fetcher_.deliver(kProgram);
    EXPECT_THAT(told, ElementsAre(true, false, true));
}

TEST_F(ASoftwareUpdater, GivesUpWhatIsUnderWayAtItsEnd) {
    updater_->start();
    EXPECT_TRUE(fetcher_.isWaitedFor());
    updater_.reset();
    EXPECT_FALSE(fetcher_.isWaitedFor());
    EXPECT_EQ(runLoop_.advance(kDay * 3), 0U);
}

} // namespace
} // namespace orvanta::test
