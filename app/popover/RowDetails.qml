import QtQuick
import Orvanta

/// What a tapped application can be set to, from top to bottom.
Column {
    id: details

    required property MixerBridge mixer
    required property AppItem item

    VolumeLine {
        width: parent.width
        mixer: details.mixer
        item: details.item
    }
    RecordingLine {
        width: parent.width
        visible: details.item.isRecording
        item: details.item
    }
    OutputLine {
        width: parent.width
        visible: details.mixer.outputs.length >= 2
        mixer: details.mixer
        item: details.item
    }
    EqualizerHeader {
        width: parent.width
        item: details.item
    }
    Loader {
        width: parent.width
        active: details.item.isEQExpanded && !details.item.isAdvancedEQ
        visible: active
        sourceComponent: SimpleEqualizer {
            item: details.item
        }
    }
    Loader {
        width: parent.width
        active: details.item.isEQExpanded && details.item.isAdvancedEQ
        visible: active
        sourceComponent: TenBandEqualizer {
            item: details.item
        }
    }
    BalanceLine {
        width: parent.width
        item: details.item
    }
    GateLine {
        width: parent.width
        item: details.item
    }
    CompressorLine {
        width: parent.width
        item: details.item
    }
    Loader {
        width: parent.width
        active: details.item.isCompressorAdvanced
        visible: active
        sourceComponent: CompressorBands {
            item: details.item
        }
    }
}
