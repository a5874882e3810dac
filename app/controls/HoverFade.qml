import QtQuick
import Orvanta

/// How a colour follows the pointer.
ColorAnimation {
    duration: Theme.hover
    easing.type: Easing.BezierSpline
    easing.bezierCurve: Theme.easeInOut
}
