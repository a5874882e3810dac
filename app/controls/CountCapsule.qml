import QtQuick
import Orvanta

/// How many, beside a heading.
Rectangle {
    id: capsule

    property int count: 0

    width: Math.max(18, text.implicitWidth + 10)
    height: 14
    radius: height / 2
    color: Theme.white(0.05)

    Text {
        id: text

        anchors.centerIn: parent
        text: capsule.count
        color: Theme.text2
        horizontalAlignment: Text.AlignLeft
        font.family: Theme.figures
        font.pixelSize: 9
        font.weight: Font.Medium
        Accessible.role: Accessible.StaticText
        Accessible.name: text.text
    }
}
