import QtQuick
import Orvanta

/// The equaliser's curve on its canvas, which is bent by dragging a handle for each band. Up and
/// down as the pointer goes, without steps; by key, wheel and tool in whole decibels.
Item {
    id: view

    /// dB of ten bands, as the model has them.
    required property list<double> gains
    /// What tools call the handles.
    required property list<string> bandNames
    /// The band whose handle is held; -1 without one.
    property int draggingBand: -1

    /// A hand wants this band at so many dB.
    signal gainChange(int band, real gain)

    implicitWidth: 376
    implicitHeight: 160

    Rectangle {
        y: 1
        width: parent.width
        height: parent.height
        radius: Theme.radiusTile
        color: Theme.lip
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusTile
        color: Theme.well
    }
    EQCurveGrid {
        anchors.fill: parent
        color: Theme.grid
        zeroColor: Theme.gridZero
    }
    EQCurveLine {
        anchors.fill: parent
        gains: view.gains
        color: Theme.accent
    }
    Repeater {
        model: RowValues.bands

        Item {
            id: band

            required property int index
            required property var modelData

            x: EQCurveScale.bandX(index, view.width)

            Text {
                x: -width / 2
                y: EQCurveScale.labelY(view.height) - height / 2
                text: band.modelData.label
                color: Theme.text1
                opacity: Theme.textOpacity(0.5)
                horizontalAlignment: Text.AlignLeft
                font: Theme.micro
                Accessible.ignored: true
            }
            EQBandHandle {
                objectName: "handle" + band.index
                x: -width / 2
                y: EQCurveScale.gainY(value, view.height) - height / 2
                canvasHeight: view.height
                label: view.bandNames[band.index] ?? ""
                // As the curve has what is no number.
                modelValue: isFinite(view.gains[band.index]) ? view.gains[band.index] : 0
                onMoved: value => view.gainChange(band.index, value)
                onIsHeldChanged: view.draggingBand = isHeld ? band.index : -1
            }
        }
    }
}
