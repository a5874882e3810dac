import QtQuick
import Orvanta

/// A card with a few rows in it.
Rectangle {
    id: card

    default property alias content: place.data

    radius: Theme.radiusCard
    color: Theme.withOpacity(Theme.menu, 0.5)
    border.color: Theme.line1

    Rectangle {
        x: card.radius
        y: 1
        width: parent.width - 2 * card.radius
        height: 1
        color: Theme.highlight
    }
    Item {
        id: place

        x: 14
        y: 4
        width: parent.width - 28
        height: parent.height - 8
    }
}
