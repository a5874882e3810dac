import QtQuick
import Orvanta

/// How much a band takes away: full at 24 dB.
Item {
    id: bar

    property real share: 0
    property string label: ""

    implicitHeight: 4
    Accessible.role: Accessible.ProgressBar
    Accessible.name: label

    SliderTrack {
        anchors.fill: parent
        tint: Theme.featureCompressor
        isLevel: true
        fillEnd: Math.round(bar.share * bar.width)
    }
}
