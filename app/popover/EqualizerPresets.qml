import QtQuick
import Orvanta

/// The named settings of the equaliser, group by group.
PopupMenu {
    id: presets

    required property AppItem item

    Repeater {
        model: RowValues.equalizerPresets

        PopupMenuItem {
            required property int index
            required property var modelData

            text: modelData.name
            emoji: modelData.emoji
            heading: modelData.heading
            isChosen: presets.item.equalizerPreset === index
            onTriggered: presets.item.applyEQPreset(index)
        }
    }
}
