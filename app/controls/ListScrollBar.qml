import QtQuick
import Orvanta

/// Says where in a list one is, while it scrolls or the pointer is over it.
Rectangle {
    id: bar

    required property Flickable view

    anchors.right: parent.right
    anchors.rightMargin: 2
    y: 4 + view.visibleArea.yPosition * (view.height - 8)
    width: 4
    height: Math.max(24, view.visibleArea.heightRatio * (view.height - 8))
    radius: 2
    color: Theme.line3
    visible: view.visibleArea.heightRatio < 1
    opacity: view.moving || hover.hovered ? 1 : 0

    Behavior on opacity { HoverMove {} }

    HoverHandler {
        id: hover

        target: null
        parent: bar.view
    }
}
