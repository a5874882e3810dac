import QtQuick
import Orvanta

/// A feature's symbol on a tile of its colour.
Rectangle {
    id: tile

    required property string symbol
    required property color tint
    property int size: 36
    property int symbolSize: 18

    width: size
    height: size
    radius: Theme.radiusTile
    color: Theme.mix(Theme.pane, tint, 0.18)
    border.color: Theme.withOpacity(tint, 0.5)

    SymbolGlyph {
        anchors.centerIn: parent
        name: tile.symbol
        size: tile.symbolSize
        color: Theme.symbolOnControl(tile.tint)
    }
}
