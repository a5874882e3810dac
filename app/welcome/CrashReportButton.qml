import QtQuick
import Orvanta

/// Mails what an earlier crash has left.
ButtonBase {
    id: button

    readonly property bool isAwake: isHovered || visualFocus || CurrentTheme.isHighContrast

    objectName: "sendCrashReport"
    text: "Send Crash Report"
    implicitWidth: content.implicitWidth + 20
    implicitHeight: 24

    Rectangle {
        anchors.fill: parent
        radius: Theme.radius
        color: Theme.withOpacity(Theme.red, button.isDown ? 0.06 : button.isHovered ? 0.16 : 0.10)

        FocusRing {
            control: parent
            radius: Theme.radius + 4
            isShown: button.visualFocus
        }
    }
    Row {
        id: content

        anchors.centerIn: parent
        spacing: 5
        opacity: button.isAwake ? 1 : Theme.textOpacity(0.8)

        SymbolGlyph {
            anchors.verticalCenter: parent.verticalCenter
            name: "envelope.badge.fill"
            size: 14
            color: button.isAwake ? Theme.redText : Theme.red
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: button.text
            color: button.isAwake ? Theme.redText : Theme.red
            horizontalAlignment: Text.AlignLeft
            font: Theme.controlText
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
}
