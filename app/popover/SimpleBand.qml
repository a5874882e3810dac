import QtQuick
import Orvanta

/// One of the three knobs.
Item {
    id: knob

    required property AppItem item
    required property int band
    required property string text

    readonly property real gain: item.gains[band]
    readonly property bool isLit: RowValues.isGainLit(slider.value)

    implicitHeight: 32

    Label {
        y: 1
        text: knob.text
        color: Theme.text1
        font: Theme.smallControl
    }
    ReadOut {
        x: parent.width - width
        y: 1
        text: RowValues.gainReadOut(slider.value)
        color: knob.isLit ? Theme.accentText : Theme.text2
        font: knob.isLit ? Theme.litReadOut : Theme.smallReadOut
    }
    ValueSlider {
        id: slider

        objectName: "band" + knob.band
        y: 16
        width: parent.width
        height: 14
        // Under it the balance begins, above it is a name.
        reachAbove: 8
        reachBelow: 2
        isMini: true
        isCentred: true
        minimumValue: -12
        maximumValue: 12
        stepSize: 0.5
        tint: knob.isLit ? Theme.accent : Theme.text3
        label: knob.text
        valueText: RowValues.gainValue(value)
        modelValue: knob.gain
        onMoved: value => knob.item.setGain(knob.band, value)
    }
}
