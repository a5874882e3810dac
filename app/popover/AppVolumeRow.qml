import QtQuick
import Orvanta

/// An application in the panel: a line while it is left alone, a card with all its controls while it
/// is tapped.
Item {
    id: row

    required property MixerBridge mixer
    required property AppItem item
    /// Space above, between cards.
    property int gap: 0

    implicitHeight: card.y + card.height
    opacity: item.isRecentlyActive ? 0.85 : 1
    Accessible.role: Accessible.ListItem
    Accessible.name: item.name

    /// Only its own unfolding is to be seen: a row that is used again for another application has
    /// that one's height at once.
    property bool isUnfolding: false

    AppItemHold {
        item: row.item
    }
    Connections {
        target: row.item
        function onUnfolding() {
            row.isUnfolding = true;
        }
    }
    Rectangle {
        id: card

        x: 8
        y: row.gap
        width: parent.width - 16
        height: content.height + (row.item.isTapped ? 4 : 0)
        radius: Theme.radiusCard
        color: hover.hovered ? Theme.rowHover : Theme.white(0)
        border.width: row.item.isTapped ? 1 : 0
        border.color: Qt.tint(Theme.surface, row.item.isRecording ? Theme.withOpacity(Theme.red, 0.34) : Theme.line1)
        gradient: row.item.isTapped ? plane : null

        Gradient {
            id: plane

            GradientStop { position: 0; color: Theme.surfaceTop }
            GradientStop { position: 1; color: Theme.surfaceBottom }
        }

        Behavior on color { HoverFade {} }
        Behavior on height {
            enabled: row.isUnfolding

            SpringMove {
                id: unfolding

                onRunningChanged: {
                    if (!running)
                        row.isUnfolding = false;
                }
            }
        }
        clip: unfolding.running

        Rectangle {
            visible: row.item.isTapped && !row.item.isRecording
            x: card.radius
            width: parent.width - 2 * card.radius
            height: 1
            color: Qt.tint(Theme.surfaceTop, Theme.line2)
        }

        HoverHandler {
            id: hover
        }

        Column {
            id: content

            x: -card.x
            width: row.width

            RowHeader {
                width: parent.width
                item: row.item
            }
            Loader {
                width: parent.width
                active: row.item.isTapped
                visible: active
                sourceComponent: RowDetails {
                    mixer: row.mixer
                    item: row.item
                }
            }
        }
    }
}
