import QtQuick
import Orvanta

/// A step's number in a ring.
Rectangle {
    id: step

    required property string number

    width: 28
    height: 28
    radius: 14
    color: Theme.withOpacity(Theme.accent, 0.18)
    border.color: Theme.withOpacity(Theme.accent, 0.5)

    Label {
        anchors.centerIn: parent
        text: step.number
        color: Theme.accentText
        font: Theme.heading
    }
}
