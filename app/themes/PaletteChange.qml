import QtQuick
import Orvanta

/// How a colour of the palette goes over into the other theme's. (Not by Theme's own tokens, whose
/// part it is.)
ColorAnimation {
    duration: Palette.isMotionReduced ? 0 : 250
    easing.type: Easing.BezierSpline
    easing.bezierCurve: [0.42, 0, 0.58, 1, 1, 1]
}
