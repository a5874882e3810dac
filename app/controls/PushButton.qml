import QtQuick
import Orvanta

/// A button on the control plane. Lit, it wears the colour of what it has switched on.
ButtonBase {
    id: button

    property bool isSmall: false
    property bool isLit: false
    property color tint: Theme.accent
    property string symbol: ""
    property color symbolColor: Theme.text3
    property int symbolSize: isSmall ? 11 : 12
    property real radius: isSmall ? Theme.radiusSmall : Theme.radius
    /// Behind the text, as menus have.
    property string trailingSymbol: ""

    implicitWidth: content.implicitWidth + 2 * (isSmall ? 7 : 9)
    implicitHeight: isSmall ? 20 : 24

    ControlPlane {
        anchors.fill: parent
        radius: button.radius
        isHovered: button.isHovered
        isPressed: button.isDown
        isLit: button.isLit
        tint: button.tint

        FocusRing {
            control: parent
            radius: button.radius + 4
            isShown: button.visualFocus
        }
    }
    Row {
        id: content

        anchors.centerIn: parent
        spacing: button.isSmall ? 4 : 5

        SymbolGlyph {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.symbol !== ""
            name: button.symbol
            size: button.symbolSize
            color: button.isLit ? Theme.legible(button.tint, 0) : button.symbolColor
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: button.text
            color: button.isLit ? Theme.legible(button.tint, 0.3)
                                : button.isDown ? Theme.text2 : Theme.text1
            horizontalAlignment: Text.AlignLeft
            font: button.isSmall ? Theme.smallControl : Theme.controlText
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
