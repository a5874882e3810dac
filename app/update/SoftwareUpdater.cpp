#include "app/update/SoftwareUpdater.h"

#include "app/update/Download.h"
#include "app/update/Signature.h"
#include "app/update/WebAddress.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace orvanta {
namespace {

using Kind = UpdateNews::Kind;

/// Feeds are pages of text, files are programs; both are kept in memory until they are judged.
constexpr std::int64_t kLargestFeed = std::int64_t{4} << 20;
constexpr std::int64_t kLargestFile = std::int64_t{512} << 20;

std::string nameOf(const AppcastItem& item) {
    return "Orvanta " + item.shortVersion;
}

UpdateNews failedDownload(const AppcastItem& item, const std::string& reason) {
    return {.kind = Kind::failed,
            .sentence = nameOf(item) + " could not be downloaded: " + reason,
            .offer = item};
}

} // namespace

SoftwareUpdater::SoftwareUpdater(Settings settings, const World& world)
    : settings_(std::move(settings)),
      world_(world),
      logger_(world.systemLog, "updates"),
      isConfigured_(!safeWebAddress(settings_.feedURL).empty() &&
                    isPublicKey(settings_.publicKey)) {}

void SoftwareUpdater::start() {
    if (!isConfigured_)
        return;
    timer_ = world_.mainRunLoop.repeat(settings_.checkInterval, [this] {
        if (!isBusy_)
            check(Asked::byTheClock);
    });
    check(Asked::byTheClock);
}

void SoftwareUpdater::checkForUpdates() {
    if (canCheckForUpdates.get())
        check(Asked::byTheUser);
}

void SoftwareUpdater::check(Asked asked) {
    setBusy(true);
    fetch_ =
        world_.fetcher.get(safeWebAddress(settings_.feedURL), kLargestFeed,
                           [this, asked](const Fetched& fetched) { finishCheck(asked, fetched); });
}

void SoftwareUpdater::finishCheck(Asked asked, const Fetched& fetched) {
    const auto over = std::exchange(fetch_, nullptr);
    const auto items = fetched.failure.empty() ? readAppcast(fetched.content) : std::nullopt;
    if (!fetched.failure.empty())
        failCheck(asked, fetched.failure);
    else if (!items)
        failCheck(asked, "What the server has sent is no list of versions.");
    else if (const auto item = updateFor(settings_.currentVersion, *items))
        offer(asked, *item);
    else if (asked == Asked::byTheUser)
        news.set({.kind = Kind::upToDate,
                  .sentence = "Orvanta " + settings_.currentVersion + " is the newest version."});
    else if (news.get().kind == Kind::offered)
        // The feed has taken it back.
        news.set({});
    setBusy(false);
}

void SoftwareUpdater::offer(Asked asked, const AppcastItem& item) {
    const bool isUnasked = asked == Asked::byTheClock;
    // What is said of this version already may be more than that it is there.
    if (isUnasked && (news.get().offer == item || item.version == dismissedVersion_))
        return;
    news.set(
        {.kind = Kind::offered,
         .sentence = nameOf(item) + " is available. You have " + settings_.currentVersion + ".",
         .offer = item});
}

void SoftwareUpdater::failCheck(Asked asked, const std::string& reason) {
    logger_.error("Update check failed: %s", reason.c_str());
    if (asked == Asked::byTheUser)
        news.set(
            {.kind = Kind::failed,
             .sentence = "It could not be found out whether there is a newer version: " + reason});
}

void SoftwareUpdater::download() {
    const auto item = news.get().offer;
    if (isBusy_ || !item || item->file.empty() || news.get().kind == Kind::downloaded)
        return;
    setBusy(true);
    news.set({.kind = Kind::downloading,
              .sentence = "Downloading " + nameOf(*item) + ".",
              .offer = item});
    const std::int64_t largest =
        item->fileSize > 0 ? std::min(item->fileSize, kLargestFile) : kLargestFile;
    fetch_ =
        world_.fetcher.get(item->file, largest, [this, offered = *item](const Fetched& fetched) {
            finishDownload(offered, fetched);
        });
}

void SoftwareUpdater::finishDownload(const AppcastItem& item, const Fetched& fetched) {
    const auto over = std::exchange(fetch_, nullptr);
    UpdateNews result = judge(item, fetched);
    if (result.kind == Kind::failed)
        logger_.error("Update download failed: %s", result.sentence.c_str());
    news.set(std::move(result));
    setBusy(false);
}

/// The file is in memory: nothing that is not ours ever reaches the disk.
UpdateNews SoftwareUpdater::judge(const AppcastItem& item, const Fetched& fetched) const {
    if (!fetched.failure.empty())
        return failedDownload(item, fetched.failure);
    if (!isSigned(std::as_bytes(std::span(fetched.content)), item.signature, settings_.publicKey))
        return failedDownload(item,
                              "The file was not signed by its makers, so it was thrown away.");
    if (!settings_.downloadFolder)
        return failedDownload(item, "There is no folder for downloads.");
    const SavedDownload saved = saveDownload(
        *settings_.downloadFolder, downloadName(item.file, item.version), fetched.content);
    if (!saved.failure.empty())
        return failedDownload(item, saved.failure);
    return {.kind = Kind::downloaded,
            .sentence = nameOf(item) + " is downloaded, and it was signed by its makers.",
            .offer = item,
            .file = saved.file};
}

void SoftwareUpdater::showFile() {
    if (news.get().kind == Kind::downloaded)
        world_.fileViewer.activateFileViewerSelecting(news.get().file);
}

void SoftwareUpdater::showPage() {
    if (const auto& item = news.get().offer; item && !item->page.empty())
        world_.urlOpener.open(item->page);
}

void SoftwareUpdater::dismiss() {
    if (news.get().kind == Kind::downloading)
        return;
    if (const auto& item = news.get().offer)
        dismissedVersion_ = item->version;
    news.set({});
}

void SoftwareUpdater::setBusy(bool isBusy) {
    isBusy_ = isBusy;
    if (const bool canCheck = isConfigured_ && !isBusy; canCheck != canCheckForUpdates.get())
        canCheckForUpdates.set(canCheck);
}

} // namespace orvanta
