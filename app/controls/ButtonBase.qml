import QtQuick
import QtQuick.Templates as T
import Orvanta

/// What all buttons have in common: mouse and keyboard, a tool tip, and what they say to assistive
/// tools.
T.AbstractButton {
    id: button

    property string help: ""
    property string label: text
    property string value: ""
    property string hint: ""

    implicitWidth: implicitBackgroundWidth
    implicitHeight: implicitBackgroundHeight
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : Theme.disabled

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.description: [value, hint].filter(part => part !== "").join(". ")
    Accessible.onPressAction: clicked()

    HelpTip {
        text: button.help
        isAsked: button.hovered && !button.pressed
    }
}
