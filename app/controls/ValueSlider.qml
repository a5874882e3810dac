import QtQuick
import Orvanta

/// A horizontal slider: its fill from the left, or from the middle when it is `isCentred`.
SliderBase {
    id: slider

    property bool isMini: false
    property bool isCentred: false
    property color tint: Theme.accent

    implicitHeight: isMini ? 12 : 16
    travelStart: 0
    travelEnd: width

    SliderTrack {
        y: Math.round((parent.height - height) / 2)
        width: parent.width
        height: slider.isMini ? 3 : 4
        tint: slider.enabled ? slider.tint : Theme.text3
        isLevel: slider.isCentred
        fillStart: slider.isCentred ? parent.width / 2 : 0
        fillEnd: slider.capPosition
    }
    Rectangle {
        visible: slider.isCentred
        x: parent.width / 2
        anchors.verticalCenter: parent.verticalCenter
        width: 1
        height: 10
        color: Theme.mark
    }
    SliderCap {
        x: slider.capPosition - width / 2
        anchors.verticalCenter: parent.verticalCenter
        isMini: slider.isMini
        isHovered: slider.isHovered
        isHeld: slider.isHeld
        isFocused: slider.visualFocus
    }
}
