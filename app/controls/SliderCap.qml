import QtQuick
import Orvanta

/// What the hand moves. Narrow, so that it points at its value.
Item {
    id: cap

    property bool isMini: false
    property bool isHovered: false
    property bool isHeld: false
    property bool isFocused: false

    width: isMini ? 6 : 8
    height: isMini ? 12 : 16

    Rectangle {
        anchors.fill: parent
        anchors.margins: -5
        radius: width / 2
        color: cap.isHeld ? Theme.accentGlow : Theme.white(cap.isHovered ? 0.09 : 0)

        Behavior on color { HoverFade {} }
    }
    Rectangle {
        x: -2
        y: -1
        width: parent.width + 4
        height: parent.height + 4
        radius: body.radius + 2
        color: Theme.black(0.14)
    }
    Rectangle {
        x: -1
        y: 0
        width: parent.width + 2
        height: parent.height + 2
        radius: body.radius + 1
        color: Theme.black(0.3)
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: -0.5
        radius: body.radius + 0.5
        color: Theme.black(0.55)
    }
    Rectangle {
        id: body

        anchors.fill: parent
        radius: cap.isMini ? 3 : Theme.radiusCap
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.capTop }
            GradientStop { position: 0.45; color: Theme.capWaist }
            GradientStop { position: 1; color: Theme.capBottom }
        }

        Rectangle {
            anchors.centerIn: parent
            visible: !cap.isMini
            width: 1
            height: 7
            color: Theme.black(0.38)
        }
    }
    FocusRing {
        control: body
        radius: body.radius + 4
        isShown: cap.isFocused
    }
}
