import QtQuick
import Orvanta

/// The plane of a button: lighter under the pointer, pushed in when pressed, tinted when lit. (A border
/// lies beside a fill, not on it, so its colour is of both.)
Rectangle {
    id: plane

    property bool isHovered: false
    property bool isPressed: false
    property bool isLit: false
    property color tint: Theme.accent

    color: isLit ? Theme.withOpacity(tint, CurrentTheme.isHighContrast ? 0.35 : 0.18)
                 : isPressed ? Theme.controlPressed : isHovered ? Theme.controlHover : Theme.control
    border.color: isLit ? Theme.withOpacity(tint, CurrentTheme.isHighContrast ? 1 : 0.5) : Qt.tint(color, Theme.line1)

    Behavior on color {
        enabled: !plane.isPressed
        HoverFade {}
    }

    Rectangle {
        visible: !plane.isLit
        x: plane.radius
        width: parent.width - 2 * plane.radius
        height: 1
        color: Qt.tint(plane.color, plane.isPressed ? Theme.black(0.35) : Theme.line2)
    }
}
