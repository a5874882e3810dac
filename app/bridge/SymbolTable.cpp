#include "app/bridge/SymbolTable.h"

#include "app/bridge/Text.h"
#include "app/drawing/Symbols.h"

namespace orvanta {

QString SymbolTable::glyph(const QString& name) {
    const std::string_view glyph = glyphOf(name.toStdString());
    if (glyph.empty() && !name.isEmpty())
        qWarning("There is no symbol \"%s\".", qPrintable(name));
    return qText(glyph);
}

} // namespace orvanta
