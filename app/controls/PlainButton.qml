import QtQuick
import Orvanta

/// Words that can be pressed, with a symbol before or behind them.
ButtonBase {
    id: button

    property string symbol: ""
    property int symbolSize: 11
    property color symbolColor: color
    property string trailingSymbol: ""
    property color color: Theme.text2
    property font textFont: Theme.caption
    property real restOpacity: 1
    property real spacing: 4

    readonly property bool isAwake: enabled && (isHovered || visualFocus)

    implicitWidth: content.implicitWidth
    implicitHeight: 18
    // Stays readable when it cannot be pressed: what it would do is news by itself.
    opacity: 1

    FocusRing {
        control: parent
        radius: Theme.radiusCap + 4
        gap: 2
        isShown: button.visualFocus
    }
    Row {
        id: content

        height: parent.height
        spacing: button.spacing
        opacity: button.isAwake ? 1 : Theme.textOpacity(button.restOpacity)

        SymbolGlyph {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.symbol !== ""
            name: button.symbol
            size: button.symbolSize
            color: button.symbolColor
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: button.text
            color: button.isAwake && !button.isDown && button.restOpacity === 1 ? Theme.text1
                                                                                : button.color
            horizontalAlignment: Text.AlignLeft
            font: button.textFont
            textFormat: Text.PlainText
            anchors.alignWhenCentered: false
            Accessible.ignored: true
        }
        SymbolGlyph {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.trailingSymbol !== ""
            name: button.trailingSymbol
            size: 9
            color: Theme.text3
        }
    }
}
