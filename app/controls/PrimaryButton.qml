import QtQuick
import Orvanta

/// The one way on: filled with the accent, one in a window.
ButtonBase {
    id: button

    property string leadingSymbol: ""
    property string trailingSymbol: ""

    implicitWidth: content.implicitWidth + 2 * 18
    implicitHeight: 36
    // The fill alone fades: its text stays as dark as what shines through.
    opacity: 1

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusPrimary
        opacity: button.enabled ? 1 : Theme.disabled
        color: button.isDown ? Theme.mix(Theme.accent, Theme.black(1), 0.15)
                             : button.isHovered ? Theme.mix(Theme.accent, Theme.white(1), 0.15) : Theme.accent

        Rectangle {
            x: Theme.radiusPrimary
            y: 1
            width: parent.width - 2 * Theme.radiusPrimary
            height: 1
            color: Theme.white(0.25)
        }

        FocusRing {
            control: parent
            radius: Theme.radiusPrimary + 4
            isShown: button.visualFocus
        }
    }
    Row {
        id: content

        anchors.centerIn: parent
        spacing: 8

        SymbolGlyph {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.leadingSymbol !== ""
            name: button.leadingSymbol
            size: 14
            color: Theme.ink
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: button.text
            color: Theme.ink
            horizontalAlignment: Text.AlignLeft
            font: Theme.heading
            textFormat: Text.PlainText
            anchors.alignWhenCentered: false
            Accessible.ignored: true
        }
        SymbolGlyph {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.trailingSymbol !== ""
            name: button.trailingSymbol
            size: 12
            color: Theme.ink
        }
    }
}
