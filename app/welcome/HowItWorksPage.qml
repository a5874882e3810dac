import QtQuick
import Orvanta

/// How it is used, in three steps.
Item {
    MenuBarSymbol {
        x: (parent.width - width) / 2
        y: 50
    }
    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 116
        text: "How It Works"
        font: Theme.title
        Accessible.role: Accessible.Heading
    }
    ListCard {
        x: 32
        y: 170
        width: parent.width - 64
        height: 189

        Repeater {
            model: [
                { number: "1", title: "Click the speaker icon", detail: "Orvanta lives in your menu bar — always one click away" },
                { number: "2", title: "Play audio in any app", detail: "Apps appear automatically when they produce sound" },
                { number: "3", title: "Click an app to take control", detail: "Adjust volume, apply EQ, route to any output device" }
            ]

            Item {
                required property int index
                required property var modelData

                y: index * 60.5
                width: parent.width
                height: 60

                Rectangle {
                    visible: parent.index > 0
                    width: parent.width
                    height: 1
                    color: Theme.divider
                }
                StepNumber {
                    anchors.verticalCenter: parent.verticalCenter
                    number: parent.modelData.number
                }
                Label {
                    x: 42
                    y: 11
                    text: parent.modelData.title
                    font: Theme.heading
                }
                Label {
                    x: 42
                    y: 32
                    text: parent.modelData.detail
                    color: Theme.text2
                    font: Theme.detail
                }
            }
        }
    }
    SymbolGlyph {
        x: 52
        y: 375
        name: "lock.shield.fill"
        size: 18
        color: Theme.legible(Theme.green, 0)
    }
    Label {
        x: 88
        y: 374
        width: 340
        text: "macOS will ask for audio capture permission — this is required for per-app control."
        color: Theme.text2
        font: Theme.note
        wrapMode: Text.Wrap
        lineHeight: 1.2
    }
}
