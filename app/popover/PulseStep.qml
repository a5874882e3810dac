import QtQuick
import Orvanta

/// Half of a recording's heartbeat.
NumberAnimation {
    property: "symbolOpacity"
    duration: Theme.pulse
    easing.type: Easing.BezierSpline
    easing.bezierCurve: Theme.easeInOut
}
