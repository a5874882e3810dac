import QtQuick
import Orvanta

/// The volume of everything.
Item {
    id: row

    required property MixerBridge mixer

    implicitHeight: 32

    SymbolGlyph {
        x: 29 - width / 2
        anchors.verticalCenter: slider.verticalCenter
        name: row.mixer.masterSymbol
        size: 15
        color: Theme.legible(Theme.featureVolume, 0)
    }
    ValueSlider {
        id: slider

        objectName: "masterSlider"
        x: 50
        y: 6
        width: 250
        label: "Master volume"
        valueText: row.mixer.masterValue
        modelValue: row.mixer.masterVolume
        onBegan: row.mixer.beginMasterDrag()
        onMoved: value => row.mixer.moveMaster(value)
        onEnded: row.mixer.endMasterDrag()
    }
    ReadOut {
        x: 344 - width
        width: 36
        anchors.verticalCenter: slider.verticalCenter
        text: row.mixer.masterReadOut
    }
}
