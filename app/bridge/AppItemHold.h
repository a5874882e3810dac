#pragma once

#include "app/bridge/AppItem.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace orvanta {

/// Keeps the item of a row that is on the screen, or waits to be used again: a view learns later
/// than the mixer that an application has gone, and its row must not be left without words. The
/// item ends with the mixer all the same.
class AppItemHold : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(orvanta::AppItem* item READ item WRITE setItem NOTIFY itemChanged)

public:
    AppItemHold() = default;

    ~AppItemHold() override { letGo(); }

    [[nodiscard]] AppItem* item() const { return item_; }

    void setItem(AppItem* item);

Q_SIGNALS:
    void itemChanged();

private:
    void letGo();

    QPointer<AppItem> item_;
};

} // namespace orvanta
