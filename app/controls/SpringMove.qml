import QtQuick
import Orvanta

/// How a row unfolds and a page turns.
NumberAnimation {
    duration: Theme.spring
    easing.type: Easing.BezierSpline
    easing.bezierCurve: Theme.springCurve
}
