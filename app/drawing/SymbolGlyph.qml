import QtQuick
import Orvanta

/// A symbol of the icon font in a square as high as the symbol's size. Says nothing by itself: what
/// it stands in has a name.
Item {
    id: symbol

    required property string name
    property int size: 12
    property color color: Theme.text3

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Text {
        anchors.centerIn: parent
        text: SymbolTable.glyph(symbol.name)
        color: symbol.color
        horizontalAlignment: Text.AlignLeft
        font.family: Theme.symbols
        font.pixelSize: symbol.size
        Accessible.ignored: true
    }
}
