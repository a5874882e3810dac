#include "app/controls/AssistedInterface.h"

#include "app/controls/AssistedItem.h"

#include <QAccessible>
#include <QQuickWindow>
#include <algorithm>

namespace orvanta {
namespace {

/// The toolkit keeps what a view says by `Accessible` in a child of the item.
QObject* wordsOf(const QObject& item) {
    const auto& children = item.children();
    const auto found = std::ranges::find_if(
        children, [](const QObject* child) { return child->inherits("QQuickAccessibleAttached"); });
    return found == children.end() ? nullptr : *found;
}

bool isSpokenOf(const QObject& item) {
    const QObject* const words = wordsOf(item);
    return words != nullptr && !words->property("ignored").toBool();
}

QAccessibleInterface* make(const QString& className, QObject* object) {
    // Entries of menus are the toolkit's own, and as silent about being off.
    if (className != AssistedItem::staticMetaObject.className() && className != "QQuickMenuItem")
        return nullptr;
    return isSpokenOf(*object) ? new AssistedInterface(static_cast<QQuickItem&>(*object)) : nullptr;
}

/// The nearest below `item` that tools are to see.
void collect(const QQuickItem& item, QList<QQuickItem*>& found) {
    for (QQuickItem* const child : item.childItems()) {
        if (isSpokenOf(*child))
            found.append(child);
        else
            collect(*child, found);
    }
}

} // namespace

void AssistedInterface::install() {
    QAccessible::installFactory(make);
}

QObject* AssistedInterface::words() const {
    return wordsOf(*object());
}

QVariant AssistedInterface::word(const char* name) const {
    const QObject* const found = words();
    return found == nullptr ? QVariant() : found->property(name);
}

QList<QQuickItem*> AssistedInterface::children() const {
    QList<QQuickItem*> found;
    collect(item(), found);
    return found;
}

QAccessibleInterface* AssistedInterface::parent() const {
    for (QQuickItem* above = item().parentItem(); above != nullptr; above = above->parentItem())
        if (isSpokenOf(*above))
            return QAccessible::queryAccessibleInterface(above);
    return QAccessible::queryAccessibleInterface(item().window());
}

QAccessibleInterface* AssistedInterface::child(int index) const {
    const auto all = children();
    return index >= 0 && index < all.size() ? QAccessible::queryAccessibleInterface(all.at(index))
                                            : nullptr;
}

int AssistedInterface::childCount() const {
    return static_cast<int>(children().size());
}

int AssistedInterface::indexOfChild(const QAccessibleInterface* child) const {
    return child == nullptr
               ? -1
               : static_cast<int>(children().indexOf(qobject_cast<QQuickItem*>(child->object())));
}

QAccessibleInterface* AssistedInterface::childAt(int x, int y) const {
    for (QQuickItem* const below : children()) {
        QAccessibleInterface* const found = QAccessible::queryAccessibleInterface(below);
        if (found != nullptr && found->rect().contains(x, y))
            return found;
    }
    return nullptr;
}

QWindow* AssistedInterface::window() const {
    return item().window();
}

QRect AssistedInterface::rect() const {
    if (item().window() == nullptr || !item().isVisible())
        return {};
    const QPoint place = item().mapToScene({}).toPoint();
    return {item().window()->mapToGlobal(place), item().size().toSize()};
}

QString AssistedInterface::text(QAccessible::Text kind) const {
    switch (kind) {
    case QAccessible::Name:
        return word("name").toString();
    case QAccessible::Description:
        return word("description").toString();
    default:
        return {};
    }
}

QAccessible::Role AssistedInterface::role() const {
    return static_cast<QAccessible::Role>(word("role").toInt());
}

QAccessible::State AssistedInterface::state() const {
    QAccessible::State state;
    const QRect place = rect();
    const QQuickWindow* const window = item().window();
    state.invisible = window == nullptr || !window->isVisible() || place.isEmpty() ||
                      qFuzzyIsNull(item().opacity());
    state.offscreen = window == nullptr ||
                      !QRect(window->mapToGlobal(QPoint()), window->size()).intersects(place);
    state.disabled = !item().isEnabled();
    state.focusable = item().activeFocusOnTab() || word("focusable").toBool();
    state.focused = item().hasActiveFocus();
    const QVariant isChosen = item().property("isChosen");
    // The toolkit overwrites what a menu's entry has said of it as soon as a tool listens.
    state.checkable = isChosen.isValid() || word("checkable").toBool();
    state.checked = isChosen.isValid() ? isChosen.toBool() : word("checked").toBool();
    state.readOnly = word("readOnly").toBool();
    if (const auto* const assisted = qobject_cast<AssistedItem*>(object())) {
        state.hasPopup = assisted->hasMenu();
        state.expandable = assisted->isExpandable();
        state.expanded = assisted->isExpandable() && assisted->isExpanded();
        state.collapsed = assisted->isExpandable() && !assisted->isExpanded();
    }
    return state;
}

bool AssistedInterface::isAboutValue() const {
    return role() == QAccessible::Slider || role() == QAccessible::ProgressBar;
}

void* AssistedInterface::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface*>(this);
    if (type == QAccessible::ValueInterface && isAboutValue())
        return static_cast<QAccessibleValueInterface*>(this);
    return nullptr;
}

QStringList AssistedInterface::actionNames() const {
    QStringList names;
    switch (role()) {
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
        names << toggleAction() << pressAction();
        break;
    case QAccessible::Button:
    case QAccessible::ButtonMenu:
    case QAccessible::MenuItem:
        names << pressAction();
        break;
    case QAccessible::Slider:
        names << increaseAction() << decreaseAction();
        break;
    default:
        break;
    }
    if (state().focusable)
        names << setFocusAction();
    return names;
}

void AssistedInterface::doAction(const QString& name) {
    if (!item().isEnabled())
        return;
    // As by key: what has the keyboard now shows it.
    if (name == setFocusAction()) {
        item().forceActiveFocus(Qt::TabFocusReason);
        return;
    }
    QObject* const asked = words();
    if (asked == nullptr)
        return;
    const std::pair<QString, const char*> signalNames[]{{pressAction(), "pressAction"},
                                                        {toggleAction(), "toggleAction"},
                                                        {increaseAction(), "increaseAction"},
                                                        {decreaseAction(), "decreaseAction"}};
    for (const auto& [action, signal] : signalNames)
        if (name == action)
            QMetaObject::invokeMethod(asked, signal);
}

QStringList AssistedInterface::keyBindingsForAction(const QString& /*name*/) const {
    return {};
}

QVariant AssistedInterface::currentValue() const {
    return item().property("value");
}

void AssistedInterface::setCurrentValue(const QVariant& value) {
    if (item().isEnabled() && !state().readOnly)
        item().setProperty("value", value);
}

QVariant AssistedInterface::maximumValue() const {
    // A share, where the item says nothing else.
    const QVariant said = item().property("maximumValue");
    return said.isValid() ? said : QVariant(1.0);
}

QVariant AssistedInterface::minimumValue() const {
    const QVariant said = item().property("minimumValue");
    return said.isValid() ? said : QVariant(0.0);
}

QVariant AssistedInterface::minimumStepSize() const {
    return item().property("stepSize");
}

} // namespace orvanta
