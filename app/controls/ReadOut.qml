import QtQuick
import Orvanta

/// A number that changes: right-aligned in its place, its figures of equal width. The control beside
/// it says the same to assistive tools.
Text {
    color: Theme.text1
    font: Theme.readOut
    horizontalAlignment: Text.AlignRight
    textFormat: Text.PlainText
    anchors.alignWhenCentered: false
    Accessible.ignored: true
}
