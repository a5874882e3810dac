import QtQuick
import Orvanta

/// A bare symbol that can be pressed. Lit, it stands on a tile of its colour.
ButtonBase {
    id: button

    required property string symbol
    property int size: 17
    property bool isLit: false
    property color tint: Theme.accent
    property color restColor: Theme.text3
    property real radius: Theme.radius
    /// Stands on the control plane also at rest.
    property bool hasPlane: false
    property real symbolOpacity: 1

    implicitWidth: 24
    implicitHeight: 24

    Rectangle {
        anchors.fill: parent
        radius: button.radius
        color: button.isLit ? Theme.withOpacity(button.tint, CurrentTheme.isHighContrast ? 0.35 : 0.18)
                            : button.hasPlane ? (button.isDown ? Theme.controlPressed
                                                 : button.isHovered ? Theme.controlHover : Theme.control)
                            : button.isDown ? Theme.controlPressed
                            : button.isHovered ? Theme.symbolHover : Theme.white(0)
        border.width: button.hasPlane ? 1 : 0
        border.color: Qt.tint(color, Theme.line1)

        Behavior on color { HoverFade {} }

        FocusRing {
            control: parent
            radius: button.radius + 4
            isShown: button.visualFocus
        }
    }
    SymbolGlyph {
        anchors.centerIn: parent
        name: button.symbol
        size: button.size
        opacity: button.symbolOpacity
        color: button.isLit ? Theme.legible(button.tint, 0)
                            : button.isDown ? Theme.text2 : button.isHovered ? Theme.text1 : button.restColor
    }
}
