#include "app/bridge/UpdateBridge.h"

#include "app/bridge/Text.h"

namespace orvanta {

UpdateBridge::UpdateBridge(SoftwareUpdater& updater)
    : updater_(updater),
      news_(updater.news.get()),
      observation_(updater.news.observe([this](const UpdateNews& coming) {
          news_ = coming;
          Q_EMIT changed();
      })) {}

QString UpdateBridge::sentence() const {
    return qText(news_.sentence);
}

bool UpdateBridge::canDownload() const {
    using enum UpdateNews::Kind;
    return (news_.kind == offered || news_.kind == failed) && news_.offer &&
           !news_.offer->file.empty();
}

bool UpdateBridge::canShowPage() const {
    return news_.offer && !news_.offer->page.empty();
}

bool UpdateBridge::canShowFile() const {
    return news_.kind == UpdateNews::Kind::downloaded;
}

} // namespace orvanta
