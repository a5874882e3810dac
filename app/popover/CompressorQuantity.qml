import QtQuick
import Orvanta

/// A quantity of one of the compressor's bands.
Item {
    id: quantity

    required property AppItem item
    required property int band
    required property int field
    /// Where it may stand, and what it is called.
    required property var range

    implicitHeight: 14

    Label {
        x: 64
        width: 38
        anchors.verticalCenter: parent.verticalCenter
        text: quantity.range.label
        color: Theme.text2
        font: Theme.caption
    }
    ValueSlider {
        id: slider

        objectName: "quantity" + quantity.band + "." + quantity.field
        x: 108
        width: 190
        height: 14
        // To the middle between it and its neighbours.
        reachAbove: 1
        reachBelow: 1
        anchors.verticalCenter: parent.verticalCenter
        isMini: true
        minimumValue: quantity.range.minimum
        maximumValue: quantity.range.maximum
        stepSize: quantity.range.step
        tint: Theme.featureCompressor
        label: quantity.range.accessibleLabel
        valueText: RowValues.compressorValue(quantity.field, value)
        modelValue: quantity.item.compressorValues[quantity.band * RowValues.compressorFields.length + quantity.field] ?? quantity.range.minimum
        onMoved: value => quantity.item.setCompressorValue(quantity.band, quantity.field, value)
    }
    ReadOut {
        x: 344 - width
        anchors.verticalCenter: parent.verticalCenter
        text: RowValues.compressorReadOut(quantity.field, slider.value)
        color: Theme.text2
        font: Theme.smallReadOut
    }
}
