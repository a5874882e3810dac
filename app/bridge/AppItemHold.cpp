#include "app/bridge/AppItemHold.h"

namespace orvanta {

void AppItemHold::setItem(AppItem* item) {
    if (item == item_)
        return;
    letGo();
    item_ = item;
    if (item != nullptr)
        item->hold();
    Q_EMIT itemChanged();
}

void AppItemHold::letGo() {
    if (AppItem* const item = item_)
        item->letGo();
}

} // namespace orvanta
