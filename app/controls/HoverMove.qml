import QtQuick
import Orvanta

/// How a part of a control goes to its other place.
NumberAnimation {
    duration: Theme.hover
    easing.type: Easing.BezierSpline
    easing.bezierCurve: Theme.easeInOut
}
