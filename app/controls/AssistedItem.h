#pragma once

#include <QQuickItem>

namespace orvanta {

/// An item that assistive tools hear more of than this version of the toolkit lets a view say: that
/// it is off, that it opens a menu, that something is unfolded, and its value when that is a new
/// one. The rest a view says by `Accessible`, and a value by the properties that the toolkit reads
/// of its own items: value, minimumValue, maximumValue, stepSize.
class AssistedItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isExpandable MEMBER isExpandable_ NOTIFY expansionChanged)
    Q_PROPERTY(bool isExpanded MEMBER isExpanded_ NOTIFY expansionChanged)
    Q_PROPERTY(bool hasMenu MEMBER hasMenu_ NOTIFY menuChanged)
    /// It has the keyboard, and shows it: the user came by key, not by a press of the mouse.
    Q_PROPERTY(bool visualFocus READ visualFocus NOTIFY visualFocusChanged)

public:
    explicit AssistedItem(QQuickItem* parent = nullptr);

    [[nodiscard]] bool isExpandable() const { return isExpandable_; }

    [[nodiscard]] bool isExpanded() const { return isExpanded_; }

    [[nodiscard]] bool hasMenu() const { return hasMenu_; }

    [[nodiscard]] bool visualFocus() const { return visualFocus_; }

    Q_INVOKABLE void takeKeyboardByMouse();
    /// Of a value that somebody sets. What moves by itself is there to be asked for: nobody wants
    /// to hear of it sixty times a second.
    Q_INVOKABLE void tellValue();

Q_SIGNALS:
    void expansionChanged();
    void menuChanged();
    void visualFocusChanged();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    void updateVisualFocus();

    bool isExpandable_ = false;
    bool isExpanded_ = false;
    bool hasMenu_ = false;
    bool isReachedByKey_ = false;
    bool visualFocus_ = false;
};

} // namespace orvanta
