import QtQuick
import Orvanta

/// What all buttons have in common: mouse and keyboard, a tool tip, and what they say to assistive
/// tools. Looks are for those made of it, which stand over its plane.
///
/// A plain item, as sliders are: of the toolkit's own buttons it says that they are push buttons,
/// whatever they say themselves.
AssistedItem {
    id: button

    property string text: ""
    property string help: ""
    property string label: text
    property string value: ""
    property string hint: ""

    /// How far beside the look a press still counts. Nobody is to aim at less than 24 x 24; where
    /// neighbours are too near for that, whoever places them shares out what there is.
    property real reachAbove: Math.max(0, (24 - height) / 2)
    property real reachBelow: Math.max(0, (24 - height) / 2)
    property real reachBefore: Math.max(0, (24 - width) / 2)
    property real reachBehind: Math.max(0, (24 - width) / 2)

    readonly property bool isHovered: area.containsMouse
    readonly property bool isDown: area.containsPress || inner.isHeldByKey

    signal clicked()

    /// By key and by an assistive tool, which does not ask first.
    function act() {
        if (enabled)
            clicked();
    }

    activeFocusOnTab: true
    opacity: enabled ? 1 : Theme.disabled

    onActiveFocusChanged: inner.isHeldByKey = false
    Keys.onPressed: event => {
        const isReturn = event.key === Qt.Key_Return || event.key === Qt.Key_Enter;
        if (!isReturn && event.key !== Qt.Key_Space)
            return;
        event.accepted = true;
        // A key that is held presses once.
        if (event.isAutoRepeat)
            return;
        if (isReturn)
            act();
        else
            inner.isHeldByKey = true;
    }
    Keys.onReleased: event => {
        if (event.key !== Qt.Key_Space || event.isAutoRepeat || !inner.isHeldByKey)
            return;
        event.accepted = true;
        inner.isHeldByKey = false;
        act();
    }

    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.description: [value, hint].filter(part => part !== "").join(". ")
    Accessible.onPressAction: act()
    Accessible.onToggleAction: act()

    QtObject {
        id: inner

        property bool isHeldByKey: false
    }
    MouseArea {
        id: area

        anchors.fill: parent
        anchors.topMargin: -button.reachAbove
        anchors.bottomMargin: -button.reachBelow
        anchors.leftMargin: -button.reachBefore
        anchors.rightMargin: -button.reachBehind
        hoverEnabled: true
        onPressed: button.takeKeyboardByMouse()
        onClicked: button.clicked()
    }
    HelpTip {
        text: button.help
        isAsked: button.isHovered && !button.isDown
    }
}
