import QtQuick
import Orvanta

/// Where the application plays.
Item {
    id: line

    required property MixerBridge mixer
    required property AppItem item

    readonly property string outputName: nameOf(item.outputUID, mixer.outputs)

    implicitHeight: visible ? 24 : 0

    function nameOf(uid: string, outputs: var): string {
        if (uid === "")
            return "System Default";
        const device = outputs.find(output => output.uid === uid);
        return device === undefined ? uid : device.name;
    }

    SymbolGlyph {
        x: 29 - width / 2
        anchors.verticalCenter: parent.verticalCenter
        name: "hifispeaker.fill"
        size: 13
        color: Theme.symbolOnControl(Theme.featureRouting)
    }
    MenuButton {
        objectName: "output"
        x: 50
        width: 294
        anchors.verticalCenter: parent.verticalCenter
        text: line.outputName
        label: line.item.outputLabel
        value: line.outputName
        menu: PopupMenu {
            PopupMenuItem {
                text: "System Default"
                isChosen: line.item.outputUID === ""
                onTriggered: line.item.route("")
            }
            MenuDivider {}
            Repeater {
                model: line.mixer.outputs

                PopupMenuItem {
                    required property var modelData

                    text: modelData.name
                    isChosen: line.item.outputUID === modelData.uid
                    onTriggered: line.item.route(modelData.uid)
                }
            }
        }
    }
}
