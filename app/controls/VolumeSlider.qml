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
            id: boost

            x: Math.max(parent.width / 2, slider.capPosition)
            width: parent.width - x
            height: parent.height
            radius: height / 2
            color: Theme.mix(Theme.well, Theme.boostAmber, 0.20)

            // Round at the track's end only.
            Rectangle {
                width: Math.min(2 * boost.radius, boost.width / 2)
                height: parent.height
                color: boost.color
            }
        }
    }
    Rectangle {
        x: parent.width / 2
        anchors.verticalCenter: parent.verticalCenter
        width: 1
        height: 12
        color: Theme.mark
    }
    SliderCap {
        x: slider.capPosition - width / 2
        anchors.verticalCenter: parent.verticalCenter
        isHovered: slider.isHovered
        isHeld: slider.isHeld
        isFocused: slider.visualFocus
    }
}
