import QtQuick
import Orvanta

/// Whether sound passes the gate: a full green dot, or a grey ring.
Item {
    id: dot

    required property bool isOpen
    required property string help

    implicitWidth: 10
    implicitHeight: 10
    Accessible.role: Accessible.StaticText
    Accessible.name: help

    Rectangle {
        anchors.fill: parent
        visible: dot.isOpen
        radius: 5
        color: Theme.withOpacity(Theme.green, 0.25)
    }
    Rectangle {
        anchors.centerIn: parent
        width: dot.isOpen ? 7 : 6
        height: width
        radius: width / 2
        color: dot.isOpen ? Theme.green : Theme.white(0)
        border.width: dot.isOpen ? 0 : 1.5
        border.color: Theme.text3
    }
    HoverHandler {
        id: hover
    }
    HelpTip {
        text: dot.help
        isAsked: hover.hovered
    }
}
