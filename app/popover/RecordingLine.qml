import QtQuick
import Orvanta

/// That the application is being recorded, and for how long.
Item {
    id: line

    required property AppItem item

    implicitHeight: visible ? 22 : 0

    Rectangle {
        x: 22
        anchors.verticalCenter: parent.verticalCenter
        width: 14
        height: 14
        radius: 7
        color: Theme.withOpacity(Theme.red, 0.25)

        Rectangle {
            anchors.centerIn: parent
            width: 8
            height: 8
            radius: 4
            color: Theme.red
        }
    }
    Rectangle {
        id: badge

        x: 50
        anchors.verticalCenter: parent.verticalCenter
        width: 30
        height: 14
        radius: Theme.radiusCap
        color: Theme.redPlane

        Text {
            anchors.centerIn: parent
            text: "REC"
            color: Theme.white(1)
            horizontalAlignment: Text.AlignLeft
            font: Theme.badge
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    Text {
        x: 88
        anchors.verticalCenter: parent.verticalCenter
        text: line.item.elapsedTime
        color: Theme.redText
        horizontalAlignment: Text.AlignLeft
        font.family: Theme.figures
        font.pixelSize: 11
        font.weight: Font.DemiBold
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
