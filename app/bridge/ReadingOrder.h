#pragma once

#include <QObject>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace orvanta {

/// The keyboard goes from item to item as they were made; people read from top to bottom.
class ReadingOrder final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// The keyboard goes through the children of `parent` from top to bottom.
    Q_INVOKABLE static void sort(QQuickItem* parent);
};

} // namespace orvanta
