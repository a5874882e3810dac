import QtQuick
import Orvanta

/// The plane of a window without a frame: light comes from above and takes a breath of the accent
/// with it; under a status bar it is darker.
Rectangle {
    id: plane

    property bool hasRoundCorners: CurrentTheme.hasCompositor
    property real headerHeight: 0
    property real footerHeight: 0
    /// Share of the height at which the light from above has faded.
    property real fade: headerHeight / height

    radius: hasRoundCorners ? Theme.radiusWindow : 0
    gradient: Gradient {
        GradientStop { position: 0; color: Theme.headerTop }
        GradientStop { position: plane.fade; color: Theme.pane }
        GradientStop { position: (plane.height - plane.footerHeight - 0.5) / plane.height; color: plane.footerHeight > 0 ? Theme.footer : Theme.window }
        GradientStop { position: (plane.height - plane.footerHeight) / plane.height; color: plane.footerHeight > 0 ? Theme.status : Theme.window }
        GradientStop { position: 1; color: plane.footerHeight > 0 ? Theme.status : Theme.window }
    }

    Rectangle {
        z: 100
        anchors.fill: parent
        radius: parent.radius
        color: Theme.white(0)
        border.color: Theme.line2
    }
}
