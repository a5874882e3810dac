import QtQuick
import Orvanta

/// Whether silence below a threshold is made complete.
Item {
    id: line

    required property AppItem item

    readonly property bool isOn: item.isGateEnabled

    implicitHeight: 24

    SymbolGlyph {
        x: 29 - width / 2
        anchors.verticalCenter: parent.verticalCenter
        name: "waveform.badge.minus"
        size: 14
        color: line.isOn ? Theme.legible(Theme.green, 0) : Theme.text3
    }
    Label {
        id: name

        x: 50
        anchors.verticalCenter: parent.verticalCenter
        text: "Noise Gate"
        color: line.isOn ? Theme.text1 : Theme.text2
    }
    GateDot {
        x: name.x + name.width + 8
        anchors.verticalCenter: parent.verticalCenter
        visible: line.isOn
        isOpen: line.item.isGateOpen
        help: line.item.gateHelp
    }
    Label {
        x: 206 - width
        anchors.verticalCenter: parent.verticalCenter
        visible: line.isOn
        text: "Threshold"
        color: Theme.text2
        font: Theme.caption
    }
    ValueSlider {
        id: slider

        objectName: "threshold"
        x: 214
        width: 56
        anchors.verticalCenter: parent.verticalCenter
        visible: line.isOn
        isMini: true
        minimumValue: -80
        maximumValue: -20
        stepSize: 1
        tint: Theme.green
        label: "Noise gate threshold"
        valueText: RowValues.thresholdValue(value)
        modelValue: line.item.gateThreshold
        onMoved: value => line.item.setGateThreshold(value)
    }
    ReadOut {
        x: 310 - width
        width: 36
        anchors.verticalCenter: parent.verticalCenter
        visible: line.isOn
        text: RowValues.thresholdReadOut(slider.value)
        color: Theme.text2
        font: Theme.smallReadOut
    }
    Switch {
        objectName: "gate"
        x: 344 - width
        anchors.verticalCenter: parent.verticalCenter
        label: line.item.gateLabel
        isOn: line.isOn
        onClicked: line.item.setGateEnabled(!line.isOn)
    }
}
