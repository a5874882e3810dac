import QtQuick
import Orvanta

/// What a band of the EQ curve is dragged by. It goes where its value is, so it takes presses where
/// it is seen only, and leaves the wheel to the list everywhere else. A double click makes it flat.
SliderBase {
    id: handle

    required property real canvasHeight

    width: 24
    height: 24
    isVertical: true
    minimumValue: -EQCurveScale.dragLimit
    maximumValue: EQCurveScale.dragLimit
    stepSize: 1
    doubleClickValue: 0
    // Its middle comes to the pointer.
    gripReach: 0
    valueText: RowValues.gainValue(value)

    function valueAt(position: real): real {
        return EQCurveScale.gainAt(y + position, canvasHeight);
    }

    Rectangle {
        anchors.centerIn: parent
        width: 20
        height: 20
        radius: 10
        color: Theme.white(handle.isHovered && !handle.isHeld ? 0.09 : 0)

        Behavior on color { HoverFade {} }
    }
    EQCurveHandle {
        anchors.fill: parent
        color: Theme.accent
        well: Theme.well
        isFlat: EQCurveScale.isFlat(handle.value)
        isHeld: handle.isHeld
    }
    Text {
        objectName: "readOut"
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.top
        anchors.bottomMargin: -1
        anchors.alignWhenCentered: false
        visible: handle.isHeld
        text: EQCurveScale.readOut(handle.value)
        color: Theme.text1
        horizontalAlignment: Text.AlignLeft
        font: Theme.dragReadOut
        Accessible.ignored: true
    }
    FocusRing {
        control: handle
        // Round the point, which is 7 within what can be hit.
        gap: 2 - 7
        radius: width / 2
        isShown: handle.visualFocus
    }
}
