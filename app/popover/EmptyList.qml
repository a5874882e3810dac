import QtQuick
import Orvanta

/// In place of the list when nothing makes sound.
Item {
    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -2

        GradientText {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 40
            height: 40
            text: SymbolTable.glyph("speaker.slash")
            font.family: Theme.symbols
            font.pixelSize: 32
            startColor: Theme.withOpacity(Theme.text2, Theme.textOpacity(0.6))
            endColor: Theme.withOpacity(Theme.text2, Theme.textOpacity(0.3))
            isVertical: true
        }
        Item {
            width: 1
            height: 10
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "No audio apps detected"
            font: Theme.heading
        }
        Item {
            width: 1
            height: 6
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Play audio in any app to see it here"
            color: Theme.text2
            font: Theme.controlText
        }
    }
}
