#pragma once

#include "app/update/UpdateFetcher.h"
#include "app/update/UpdateNews.h"
#include "core/platform/FileViewer.h"
#include "core/platform/Logger.h"
#include "core/platform/RunLoop.h"
#include "core/platform/URLOpener.h"
#include "core/publishing/Published.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace orvanta {

/// Looks for newer versions in a feed, at its start and from time to time, and when the user asks.
/// Offers what it finds, and fetches the file when it is told to: one that we have signed into the
/// user's folder, any other nowhere. It runs nothing. Belongs to the main thread.
class SoftwareUpdater {
public:
    struct Settings {
        /// https: only. Without a feed, or without a key, it never looks.
        std::string feedURL = {};
        /// In Base64.
        std::string publicKey = {};
        std::string currentVersion = {};
        Seconds checkInterval{86'400.0};
        std::optional<std::filesystem::path> downloadFolder = std::nullopt;
    };

    /// What the updater uses; all of it must outlive it.
    struct World {
        UpdateFetcher& fetcher;
        RunLoop& mainRunLoop;
        FileViewer& fileViewer;
        URLOpener& urlOpener;
        SystemLog& systemLog;
    };

    SoftwareUpdater(Settings settings, const World& world);

    /// Whether the user may ask for a check: not before the start, nor while one or a download is
    /// under way, and never without a feed.
    Published<bool> canCheckForUpdates{false};

    /// What has been found lastly. A check that nobody asked for says nothing unless it finds
    /// something.
    Published<UpdateNews> news;

    /// The first check, and then one in each interval. To be called once.
    void start();

    /// By the user's hand: whatever comes of it is told. Nothing happens where it is not possible.
    void checkForUpdates();

    /// Fetches the file that is offered, if any.
    void download();

    /// Shows the downloaded file in its folder.
    void showFile();

    /// Opens the page of what is offered.
    void showPage();

    /// Says no more of it. The same version is offered again in another run, or when the user
    /// asks.
    void dismiss();

private:
    enum class Asked { byTheClock, byTheUser };

    void check(Asked asked);
    void finishCheck(Asked asked, const Fetched& fetched);
    void offer(Asked asked, const AppcastItem& item);
    void failCheck(Asked asked, const std::string& reason);
    void finishDownload(const AppcastItem& item, const Fetched& fetched);
    [[nodiscard]] UpdateNews judge(const AppcastItem& item, const Fetched& fetched) const;
    void setBusy(bool isBusy);

    const Settings settings_;
    const World world_;
    const Logger logger_;
    const bool isConfigured_;
    bool isBusy_ = false;
    std::string dismissedVersion_;
    std::unique_ptr<Fetch> fetch_;
    std::unique_ptr<RepeatingTimer> timer_;
};

} // namespace orvanta
