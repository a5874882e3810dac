#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orvanta {

/// The symbols' names, for the views.
class SymbolTable final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// What draws the symbol in the icon font. Warns of a name that there is not.
    Q_INVOKABLE [[nodiscard]] static QString glyph(const QString& name);
};

} // namespace orvanta
