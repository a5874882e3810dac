import QtQuick
import Orvanta

/// Round what has the keyboard, for those who use it.
Rectangle {
    id: ring

    required property Item control
    property bool isShown: false
    property real gap: 2

    anchors.fill: control
    anchors.margins: -gap - Theme.focusWidth
    visible: isShown
    color: Theme.withOpacity(Theme.accent, 0)
    border.width: Theme.focusWidth
    border.color: Theme.accent
}
