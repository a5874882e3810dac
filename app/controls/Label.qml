import QtQuick
import Orvanta

/// A line of text. Names in scripts that run from right to left stay on the left, where all names
/// begin, and are cut off at their own end.
Text {
    id: label

    color: Theme.text1
    font: Theme.controlText
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignLeft
    textFormat: Text.PlainText
    // Half pixels count on dense screens.
    anchors.alignWhenCentered: false
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
