import QtQuick
import Orvanta

/// Every control in every state, to be looked at. What is called by a state that takes a hand ("hover
/// Button") looks so once somebody brings it into it. Rows by value show six values instead.
Rectangle {
    id: sheet

    required property MixerBridge mixer
    /// Six that are tapped, each as loud as the meters' row is to show it.
    required property var apps
    /// Names of the theme's colours for the six volumes.
    required property var tints
    required property var volumes

    readonly property list<string> states: ["rest", "hover", "pressed", "focus", "disabled", "on"]
    readonly property list<real> offsets: [0, -0.4, 0.6, 0.4, 0]

    width: 960
    height: 620
    color: Theme.surface

    /// A control's line: its name, and a cell for each of its states.
    component ControlRow: Item {
        id: line

        required property string name
        required property Component control
        property int cells: 6
        property bool isByValue: false

        width: 920
        height: 56

        Rectangle {
            width: parent.width
            height: 1
            color: Theme.divider
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: line.name
            color: Theme.text2
        }
        Repeater {
            model: line.cells

            Item {
                id: cell

                required property int index

                x: 150 + 128 * index
                width: 128
                height: 56

                Loader {
                    readonly property int column: cell.index
                    readonly property string mode: sheet.states[cell.index]

                    anchors.centerIn: parent
                    objectName: mode + " " + line.name
                    enabled: line.isByValue || mode !== "disabled"
                    sourceComponent: line.control
                }
            }
        }
    }

    Repeater {
        model: sheet.states

        Label {
            required property int index
            required property string modelData

            x: 234 + 128 * index - width / 2
            y: 20
            text: modelData.toUpperCase()
            color: Theme.text3
            font: Theme.section
        }
    }
    Column {
        x: 20
        y: 38

        ControlRow {
            name: "Button"
            control: PushButton {
                text: "Mute"
                symbol: parent?.mode === "on" ? "speaker.slash.fill" : "speaker.wave.1.fill"
                isLit: parent?.mode === "on"
                tint: Theme.red
            }
        }
        ControlRow {
            name: "Primary button"
            cells: 5
            control: PrimaryButton {
                text: "Next"
                trailingSymbol: "arrow.right"
            }
        }
        ControlRow {
            name: "Icon button"
            control: IconButton {
                symbol: "waveform.circle.fill"
                label: "Tap"
                isLit: parent?.mode === "on"
            }
        }
        ControlRow {
            name: "Menu button"
            cells: 5
            control: MenuButton {
                width: 112
                text: "Music"
                menu: PopupMenu {}
            }
        }
        ControlRow {
            name: "Switch"
            control: Switch {
                label: "Gate"
                isOn: parent?.mode === "on"
            }
        }
        ControlRow {
            name: "Slider"
            cells: 5
            control: ValueSlider {
                width: 112
                label: "Slider"
                modelValue: 0.6
            }
        }
        ControlRow {
            name: "Volume 0..2, by value"
            isByValue: true
            control: VolumeSlider {
                width: 112
                label: "Volume"
                modelValue: sheet.volumes[parent?.column ?? 0]
                tint: Theme[sheet.tints[parent?.column ?? 0]]
            }
        }
        ControlRow {
            name: "Mini, centred"
            cells: 5
            control: ValueSlider {
                width: 112
                label: "Balance"
                isMini: true
                isCentred: true
                minimumValue: -1
                maximumValue: 1
                modelValue: sheet.offsets[parent?.column ?? 0]
            }
        }
        ControlRow {
            name: "Level meter"
            isByValue: true
            control: RowMeter {
                width: 112
                mixer: sheet.mixer
                item: sheet.apps[parent?.column ?? 0]
            }
        }
        ControlRow {
            name: "Badges, activity mark"
            cells: 2
            control: Item {
                readonly property int column: parent.column

                CountCapsule {
                    anchors.centerIn: parent
                    visible: parent.column === 0
                    count: 3
                }
                WaveformIndicator {
                    anchors.centerIn: parent
                    visible: parent.column === 1
                }
            }
        }
    }
}
