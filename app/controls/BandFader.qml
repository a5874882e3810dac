import QtQuick
import Orvanta

/// A band of the equaliser, upright on the canvas of the response line and on its scale.
SliderBase {
    id: fader

    readonly property bool isFlat: Math.abs(value) <= 0.5

    isVertical: true
    minimumValue: -12
    maximumValue: 12
    stepSize: 0.5

    Rectangle {
        x: parent.width / 2 - 1
        width: 2
        height: parent.height
        radius: 1
        color: Theme.black(1)
        border.width: 0

        Rectangle {
            x: 2
            width: 1
            height: parent.height
            color: Theme.lip
        }
    }
    Rectangle {
        id: cap

        x: (parent.width - width) / 2
        y: fader.capPosition - height / 2
        width: 16
        height: 7
        radius: 3.5
        gradient: Gradient {
            GradientStop { position: 0; color: fader.isFlat ? Theme.capBottom : Theme.capTop }
            GradientStop { position: 1; color: fader.isFlat ? Theme.capFlat : Theme.capBottom }
        }

        Rectangle {
            anchors.centerIn: parent
            width: 10
            height: 1
            color: fader.isFlat ? Theme.black(0.55) : Theme.accent
        }
        Rectangle {
            z: -1
            anchors.fill: parent
            anchors.margins: -5
            radius: height / 2
            color: fader.isHeld ? Theme.accentGlow : Theme.white(fader.isHovered ? 0.09 : 0)
        }
        FocusRing {
            control: cap
            radius: cap.radius + 4
            isShown: fader.visualFocus
        }
    }
}
