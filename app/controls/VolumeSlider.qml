import QtQuick
import Orvanta

/// From silence to twice as loud. Where the program is as loud as it plays, in the middle, stands a
/// mark, and the half beyond it is tinted: unity is found without reading.
SliderBase {
    id: slider

    property color tint: Theme.accent

    implicitHeight: 16
    maximumValue: 2

    SliderTrack {
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        height: 4
        tint: slider.tint
        fillEnd: slider.capPosition

        Rectangle {
            readonly property real start: Math.max(parent.width / 2, slider.capPosition)

            x: start
            width: parent.width - start - 1
            height: parent.height
            color: Theme.withOpacity(Theme.boostAmber, 0.20)
        }
    }
    Rectangle {
        x: parent.width / 2
        anchors.verticalCenter: parent.verticalCenter
        width: 1
        height: 12
        color: Theme.white(0.22)
    }
    SliderCap {
        x: slider.capPosition - width / 2
        anchors.verticalCenter: parent.verticalCenter
        isHovered: slider.isHovered
        isHeld: slider.isHeld
        isFocused: slider.visualFocus
    }
}
