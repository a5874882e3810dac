import QtQuick
import Orvanta

/// What there is to explore: the features' colours round a spark.
Item {
    id: page

    readonly property real middleX: width / 2
    readonly property real middleY: 202

    component Ring: Rectangle {
        property real reach: 100

        x: page.middleX - reach
        y: page.middleY - reach
        width: 2 * reach
        height: 2 * reach
        radius: reach
        color: Theme.white(0)
        border.color: Theme.line1
        antialiasing: true
    }

    Ring {
        reach: 112
    }
    Ring {
        reach: 74
        border.color: Theme.white(0.04)
    }
    Rectangle {
        x: page.middleX - 42
        y: page.middleY - 42
        width: 84
        height: 84
        radius: 42
        border.color: Theme.withOpacity(Theme.accent, 0.55)
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.mix(Theme.pane, Theme.accent, 0.32) }
            GradientStop { position: 1; color: Theme.mix(Theme.pane, Theme.accent, 0.12) }
        }

        SymbolGlyph {
            anchors.centerIn: parent
            name: "sparkles"
            size: 42
            color: Theme.legible(Theme.accent, 0)
        }
    }
    Repeater {
        model: [
            { symbol: "speaker.wave.3.fill", tint: Theme.featureVolume },
            { symbol: "arrow.triangle.branch", tint: Theme.featureRouting },
            { symbol: "slider.horizontal.3", tint: Theme.featureEQ },
            { symbol: "waveform.path", tint: Theme.featureCompressor },
            { symbol: "record.circle", tint: Theme.featureRecording },
            { symbol: "arrow.left.and.right", tint: Theme.featureBalance },
            { symbol: "command", tint: Theme.featureShortcuts }
        ]

        FeatureTile {
            required property int index
            required property var modelData
            readonly property real angle: index * 2 * Math.PI / 7

            x: page.middleX + 112 * Math.sin(angle) - width / 2
            y: page.middleY - 112 * Math.cos(angle) - height / 2
            size: 44
            symbolSize: 22
            symbol: modelData.symbol
            tint: modelData.tint
        }
    }
    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 364
        text: "Ready to explore"
        font: Theme.title
        Accessible.role: Accessible.Heading
    }
}
