import QtQuick
import Orvanta

/// On or off. Asks; whoever owns the state answers by `isOn`.
ButtonBase {
    id: control

    property bool isOn: false

    implicitWidth: 26
    implicitHeight: 16
    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: isOn

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: control.isOn ? Theme.accent : control.isDown ? Theme.black(1) : Theme.well
        border.color: control.isOn ? color : Qt.tint(color, control.isHovered ? Theme.line3 : Theme.line2)

        Behavior on color { HoverFade {} }

        Rectangle {
            x: control.isOn ? 12 : 2
            y: 2
            width: 12
            height: 12
            radius: 6
            color: control.isOn ? Theme.white(1) : Theme.text2

            Behavior on x { HoverMove {} }
        }

        FocusRing {
            control: parent
            radius: height / 2
            isShown: control.visualFocus
        }
    }
}
