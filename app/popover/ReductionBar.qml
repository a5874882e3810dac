import QtQuick
import Orvanta

/// How much a band takes away: full at 24 dB. To assistive tools in dB.
AssistedItem {
    id: bar

    property real share: 0
    property string label: ""

    readonly property real minimumValue: 0
    readonly property real maximumValue: RowValues.fullReduction
    readonly property real value: share * maximumValue

    implicitHeight: 4
    Accessible.role: Accessible.ProgressBar
    Accessible.name: label
    Accessible.readOnly: true

    SliderTrack {
        anchors.fill: parent
        tint: Theme.featureCompressor
        isLevel: true
        fillEnd: Math.round(bar.share * bar.width)
    }
}
