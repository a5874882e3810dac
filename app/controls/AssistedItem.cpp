#include "app/controls/AssistedItem.h"

#include "app/controls/AssistedInterface.h"

#include <QAccessible>
#include <utility>

namespace orvanta {
namespace {

void tellState(QObject& item, const QAccessible::State& changed) {
    QAccessibleStateChangeEvent event(&item, changed);
    QAccessible::updateAccessibility(&event);
}

} // namespace

AssistedItem::AssistedItem(QQuickItem* parent) : QQuickItem(parent) {
    AssistedInterface::install();
    connect(this, &AssistedItem::expansionChanged, this, [this] {
        QAccessible::State changed;
        changed.expanded = true;
        changed.collapsed = true;
        tellState(*this, changed);
    });
}

void AssistedItem::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemActiveFocusHasChanged)
        updateVisualFocus();
    if (change == ItemEnabledHasChanged) {
        QAccessible::State changed;
        changed.disabled = true;
        tellState(*this, changed);
    }
    QQuickItem::itemChange(change, data);
}

void AssistedItem::takeKeyboardByMouse() {
    // No event comes to what has the keyboard already.
    isReachedByKey_ = false;
    forceActiveFocus(Qt::MouseFocusReason);
    updateVisualFocus();
}

void AssistedItem::tellValue() {
    QAccessibleValueChangeEvent event(this, property("value"));
    QAccessible::updateAccessibility(&event);
}

void AssistedItem::focusInEvent(QFocusEvent* event) {
    switch (event->reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        isReachedByKey_ = true;
        break;
    case Qt::PopupFocusReason:
    case Qt::ActiveWindowFocusReason:
        // Back from a menu, or from another window: as it was.
        break;
    default:
        isReachedByKey_ = false;
    }
    QQuickItem::focusInEvent(event);
    updateVisualFocus();
}

void AssistedItem::updateVisualFocus() {
    const bool next = hasActiveFocus() && isReachedByKey_;
    if (std::exchange(visualFocus_, next) != next)
        Q_EMIT visualFocusChanged();
}

} // namespace orvanta
