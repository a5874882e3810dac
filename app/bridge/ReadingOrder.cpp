#include "app/bridge/ReadingOrder.h"

#include <algorithm>

namespace orvanta {

void ReadingOrder::sort(QQuickItem* parent) {
    if (parent == nullptr)
        return;
    QList<QQuickItem*> children = parent->childItems();
    if (std::ranges::is_sorted(children, {}, &QQuickItem::y))
        return;
    std::ranges::stable_sort(children, {}, &QQuickItem::y);
    for (qsizetype place = 1; place < children.size(); ++place)
        children.at(place)->stackAfter(children.at(place - 1));
}

} // namespace orvanta
