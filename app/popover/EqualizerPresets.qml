import QtQuick
import Orvanta

/// The named settings of the equaliser, group by group.
PopupMenu {
    id: menu

    required property AppItem item

    Repeater {
        model: RowValues.equalizerPresets

        PopupMenuItem {
            required property int index
            required property var modelData

            text: modelData.name
            emoji: modelData.emoji
            heading: modelData.heading
            isChosen: menu.item.equalizerPreset === index
            onTriggered: menu.item.applyEQPreset(index)
        }
    }
}
