import QtQuick
import Orvanta

/// The hand's side of every slider. One hand at a time: while it holds the cap, what the model says
/// waits. A move by key, wheel or an assistive tool is a drag of one step. Looks are for those made
/// of it; they place the cap by `share` and tell where its travel begins and ends.
///
/// A plain item: to assistive tools the toolkit's own controls have the role that it has for them,
/// whatever they say themselves, and a bare control has no value.
AssistedItem {
    id: slider

    /// What the model has.
    property real modelValue: 0
    property real minimumValue: 0
    property real maximumValue: 1
    property real stepSize: 0.01
    property bool isVertical: false
    /// How far from the cap's middle a press takes hold of it there; one beyond brings the middle to
    /// the pointer.
    property real gripReach: 8
    /// What a double click sets; no number where it is two presses like others.
    property real doubleClickValue: NaN
    /// Ends of the way that the cap's middle goes, along the slider.
    property real travelStart: 0
    property real travelEnd: isVertical ? height : width

    property string label: ""
    /// The value in words.
    property string valueText: ""

    /// As shown. An assistive tool writes it.
    property real value: 0
    readonly property real share: (value - minimumValue) / (maximumValue - minimumValue)
    readonly property real capPosition: travelStart + (isVertical ? 1 - share : share) * (travelEnd - travelStart)
    readonly property bool isHeld: area.pressed
    readonly property bool isHovered: area.containsMouse

    signal began()
    signal moved(real value)
    signal ended()

    /// How far beside the slider a press still counts: no smaller than a finger's aim, whatever its
    /// look. Where neighbours are too near for that, whoever places them shares out what there is.
    property real reachAbove: Math.max(0, (24 - height) / 2)
    property real reachBelow: Math.max(0, (24 - height) / 2)
    property real reachBeside: Math.max(0, (24 - width) / 2)

    activeFocusOnTab: true
    opacity: enabled ? 1 : Theme.disabled

    Accessible.role: Accessible.Slider
    Accessible.focusable: true
    Accessible.name: label
    Accessible.description: valueText
    Accessible.onIncreaseAction: step(1)
    Accessible.onDecreaseAction: step(-1)

    Keys.onPressed: event => {
        const steps = slider.stepsOf(event.key);
        if (steps === 0)
            return;
        event.accepted = true;
        slider.step(steps);
    }

    onModelValueChanged: show(modelValue)
    onValueChanged: {
        if (!inner.isWriting)
            moveTo(value);
        tellValue();
    }
    Component.onCompleted: show(modelValue)

    QtObject {
        id: inner

        property bool isWriting: false
        /// From the pointer to the cap's middle.
        property real grip: 0
        property real wheel: 0
        /// Nothing more comes of this press.
        property bool isSpent: false
    }

    /// What the model has is shown again when a hand's move has come to nothing there.
    Timer {
        id: settling

        interval: 150
        onTriggered: slider.show(slider.modelValue)
    }

    function show(next: real) {
        if (!area.pressed)
            write(next);
    }

    function write(next: real) {
        inner.isWriting = true;
        value = next;
        inner.isWriting = false;
    }

    /// Whether the list that it stands in moves under the pointer, whose wheel is then the list's.
    function isScrolledPast(): bool {
        for (let above = parent; above !== null; above = above.parent)
            if (above instanceof Flickable)
                return above.moving;
        return false;
    }

    function snapped(next: real): real {
        const steps = Math.round((next - minimumValue) / stepSize);
        return Math.min(Math.max(minimumValue + steps * stepSize, minimumValue), maximumValue);
    }

    function stepsOf(key: int): int {
        const all = Math.round((maximumValue - minimumValue) / stepSize);
        switch (key) {
        case Qt.Key_Right:
        case Qt.Key_Up:
            return 1;
        case Qt.Key_Left:
        case Qt.Key_Down:
            return -1;
        case Qt.Key_PageUp:
            return 10;
        case Qt.Key_PageDown:
            return -10;
        case Qt.Key_Home:
            return -all;
        case Qt.Key_End:
            return all;
        }
        return 0;
    }

    function step(steps: int) {
        moveTo(value + steps * stepSize);
    }

    function moveTo(next: real) {
        // A hand that holds the cap is the one writer.
        if (area.pressed)
            return;
        began();
        write(snapped(next));
        moved(value);
        ended();
        settling.restart();
    }

    /// What the cap stands for when its middle is dragged here.
    function valueAt(position: real): real {
        const along = (position - travelStart) / (travelEnd - travelStart);
        return snapped(minimumValue + (isVertical ? 1 - along : along) * (maximumValue - minimumValue));
    }

    function drag(position: real) {
        if (!inner.isSpent)
            dragTo(valueAt(position + inner.grip));
    }

    function dragTo(next: real) {
        if (next === value)
            return;
        write(next);
        moved(next);
    }

    MouseArea {
        id: area

        anchors.fill: parent
        anchors.topMargin: -slider.reachAbove
        anchors.bottomMargin: -slider.reachBelow
        anchors.leftMargin: -slider.reachBeside
        anchors.rightMargin: -slider.reachBeside
        hoverEnabled: true
        preventStealing: true
        enabled: slider.enabled

        function along(mouse: var): real {
            return slider.isVertical ? mouse.y + anchors.topMargin : mouse.x + anchors.leftMargin;
        }

        onPressed: mouse => {
            slider.takeKeyboardByMouse();
            const position = along(mouse);
            const offset = slider.capPosition - position;
            inner.grip = Math.abs(offset) <= slider.gripReach ? offset : 0;
            inner.isSpent = false;
            slider.began();
            slider.drag(position);
        }
        onExited: inner.wheel = 0
        onPositionChanged: mouse => {
            if (pressed)
                slider.drag(along(mouse));
        }
        onDoubleClicked: {
            if (isNaN(slider.doubleClickValue))
                return;
            // A hand that trembles does not undo it.
            inner.isSpent = true;
            slider.dragTo(slider.doubleClickValue);
        }
        onReleased: finish()
        onCanceled: finish()

        function finish() {
            slider.ended();
            settling.restart();
        }

        onWheel: wheel => {
            if (wheel.angleDelta.y === 0 || slider.isScrolledPast()) {
                wheel.accepted = false;
                return;
            }
            inner.wheel += wheel.angleDelta.y;
            const steps = Math.trunc(inner.wheel / 120);
            if (steps === 0)
                return;
            inner.wheel -= steps * 120;
            slider.step(steps);
        }
    }
}
