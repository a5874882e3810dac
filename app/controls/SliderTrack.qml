import QtQuick
import Orvanta

/// The well that a value lies in, from its start to `fillEnd`.
Item {
    id: track

    property color tint: Theme.accent
    property real fillStart: 0
    property real fillEnd: 0
    property bool isLevel: false

    readonly property real from: Math.min(fillStart, fillEnd)
    readonly property real until: Math.max(fillStart, fillEnd)

    Rectangle {
        y: 1
        width: parent.width
        height: parent.height
        radius: Theme.radiusTrack
        color: Theme.lip
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusTrack
        color: Theme.well
    }
    Rectangle {
        x: track.from
        width: track.until - track.from
        height: parent.height
        radius: Theme.radiusTrack
        visible: width > 0
        gradient: Gradient {
            orientation: Gradient.Horizontal
            GradientStop { position: 0; color: Theme.mix(Theme.well, track.tint, track.isLevel ? 1 : 0.62) }
            GradientStop { position: 1; color: track.tint }
        }
    }
}
