import QtQuick
import Orvanta

/// Names a section of the list and says how many rows it has.
Item {
    id: header

    required property string title
    property int count: 0
    /// Space above, where the list can afford it.
    property int gap: 0

    implicitHeight: gap + 20

    Row {
        x: 16
        y: header.gap
        height: 20
        spacing: 6

        Label {
            anchors.verticalCenter: parent.verticalCenter
            anchors.verticalCenterOffset: 0.5
            text: header.title.toUpperCase()
            color: Theme.text3
            font: Theme.section
            Accessible.role: Accessible.Heading
            Accessible.name: header.title
        }
        CountCapsule {
            anchors.verticalCenter: parent.verticalCenter
            count: header.count
        }
    }
}
