import QtQuick
import Orvanta

/// What it does.
Item {
    AboutIcon {
        x: (parent.width - width) / 2
        y: 44
        size: 96
    }
    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 162
        text: "Welcome to Orvanta"
        font: Theme.title
        Accessible.role: Accessible.Heading
    }
    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 197
        text: "The audio mixer macOS should have built in."
        color: Theme.text2
        font: Theme.subtitle
    }
    ListCard {
        x: 32
        y: 241
        width: parent.width - 64
        height: 164

        Repeater {
            model: [
                { symbol: "slider.horizontal.3", tint: Theme.featureVolume, text: "Control each app's volume independently" },
                { symbol: "arrow.triangle.branch", tint: Theme.featureRouting, text: "Route apps to different speakers & headphones" },
                { symbol: "waveform.path", tint: Theme.featureEQ, text: "EQ, compressor, stereo effects & more" }
            ]

            Item {
                required property int index
                required property var modelData

                y: index * 52
                width: parent.width
                height: 52

                Rectangle {
                    visible: parent.index > 0
                    width: parent.width
                    height: 1
                    color: Theme.divider
                }
                FeatureTile {
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: parent.modelData.symbol
                    tint: parent.modelData.tint
                }
                Label {
                    x: 48
                    anchors.verticalCenter: parent.verticalCenter
                    text: parent.modelData.text
                    font: Theme.rowTitle
                }
            }
        }
    }
}
