#pragma once

#include "tests/app/support/ViewRig.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QPoint>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <memory>
#include <vector>

namespace orvanta::test {

/// A view in a window, used as people do: by what its controls are called, with mouse and keys.
class ViewTest : public testing::Test, public ViewRig {
protected:
    ViewTest();
    ~ViewTest() override;

    /// In a window of its size, where it is not a window itself.
    void show(const QString& file, const QVariantMap& properties = {});
    /// What the model has changed is on the screen.
    void settleView();

    /// The visible item with this accessible name and one of the roles of what can be used; null
    /// where there is none.
    [[nodiscard]] QQuickItem* control(const QString& name) const;
    /// The same, which must be there.
    [[nodiscard]] QQuickItem& the(const QString& name) const;
    /// Every visible item, from back to front.
    [[nodiscard]] std::vector<QQuickItem*> visibleItems() const;
    /// Whether a visible text says this.
    [[nodiscard]] bool says(const QString& text) const;
    /// Whether a visible glyph is this symbol.
    [[nodiscard]] bool showsSymbol(const QString& name) const;

    /// All that assistive tools see of the window.
    [[nodiscard]] std::vector<QAccessibleInterface*> seenByTools() const;

    // As assistive tools have it. Empty for what has nothing to say.
    [[nodiscard]] static QString nameOf(QQuickItem& item);
    [[nodiscard]] static QString descriptionOf(QQuickItem& item);
    [[nodiscard]] static QAccessible::Role roleOf(QQuickItem& item);
    [[nodiscard]] static bool isChecked(QQuickItem& item);

    [[nodiscard]] static QPoint middleOf(QQuickItem& item);
    /// A place on the item, in the window.
    [[nodiscard]] static QPoint placeOn(QQuickItem& item, double shareOfWidth);

    /// Scrolls to it where it is in a list.
    void reveal(QQuickItem& item);
    void click(const QString& name);
    void press(const QPoint& place);
    void move(const QPoint& place);
    void release(const QPoint& place);
    void key(Qt::Key key);
    /// The view has the updates' button, which can be pressed only where updates can be looked for.
    void expectUpdatesAreLookedForWhereTheyCanBe();
    /// The panel's list.
    [[nodiscard]] QQuickItem* appList() const;

    std::unique_ptr<QObject> view;
    QQuickItem* root = nullptr;
    QQuickWindow* window = &ownWindow_;

private:
    QQuickWindow ownWindow_;
};

} // namespace orvanta::test
