import QtQuick
import Orvanta

/// How many applications there are, are tapped, and play.
Row {
    id: counts

    required property MixerBridge mixer

    component Separator: Text {
        text: "  ·  "
        color: Theme.text1
        opacity: Theme.textOpacity(0.45)
        horizontalAlignment: Text.AlignLeft
        font: Theme.caption
        Accessible.ignored: true
    }

    Label {
        text: counts.mixer.appCount
        color: Theme.text2
        font: Theme.caption
    }
    Separator {
        visible: counts.mixer.tappedCount !== ""
    }
    Label {
        visible: text !== ""
        text: counts.mixer.tappedCount
        color: Theme.accentText
        opacity: Theme.textOpacity(0.8)
        font: Theme.caption
    }
    Separator {
        visible: counts.mixer.playingCount !== ""
    }
    Label {
        visible: text !== ""
        text: counts.mixer.playingCount
        color: Theme.legible(Theme.green, 0)
        opacity: Theme.textOpacity(0.8)
        font: Theme.caption
    }
}
