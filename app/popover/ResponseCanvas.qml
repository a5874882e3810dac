import QtQuick
import Orvanta

/// The well in which the equaliser's response is drawn.
Item {
    id: canvas

    required property list<double> gains
    /// Lines at the decades of Hz, where no faders stand.
    property bool hasDecades: true

    Rectangle {
        y: 1
        width: parent.width
        height: parent.height
        radius: Theme.radius
        color: Theme.lip
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.radius
        color: Theme.well
    }
    Repeater {
        model: canvas.hasDecades ? [100, 1000, 10000] : []

        Rectangle {
            required property int modelData

            x: Math.round(canvas.width * Math.log(modelData / 20) / Math.log(1000))
            width: 1
            height: canvas.height
            color: Theme.white(0.05)
        }
    }
    Rectangle {
        y: Math.round(canvas.height / 2)
        width: parent.width
        height: 1
        color: Theme.white(0.12)
    }
    ResponseCurve {
        anchors.fill: parent
        gains: canvas.gains
        color: Theme.accent
    }
}
