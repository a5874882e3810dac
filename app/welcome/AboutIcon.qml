import QtQuick
import Orvanta

/// The program's icon, large; it comes a little nearer to the pointer.
Item {
    id: icon

    property int size: 88
    property bool iconHover: hover.hovered

    implicitWidth: size
    implicitHeight: size

    BorderImage {
        anchors.fill: picture
        anchors.margins: -24
        anchors.topMargin: -14
        anchors.bottomMargin: -34
        source: "image://shadow/24/20/0.45"
        border { left: 46; right: 46; top: 46; bottom: 46 }
    }
    AppIcon {
        id: picture

        anchors.fill: parent
        size: icon.size
        scale: icon.iconHover ? 1.05 : 1

        Behavior on scale {
            NumberAnimation {
                duration: Theme.iconHover
                easing.type: Easing.BezierSpline
                easing.bezierCurve: Theme.easeInOut
            }
        }
    }
    HoverHandler {
        id: hover
    }
}
