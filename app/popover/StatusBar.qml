import QtQuick
import Orvanta

/// How much there is, which version this is, and the ways out.
Item {
    id: bar

    required property MixerBridge mixer
    required property ShellBridge shell

    implicitHeight: 40

    Row {
        x: 16
        y: 2
        height: 18

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: bar.mixer.appCount
            color: Theme.text2
            font: Theme.caption
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: "  ·  "
            color: Theme.text3
            horizontalAlignment: Text.AlignLeft
            font: Theme.caption
            Accessible.ignored: true
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: bar.shell.versionText
            color: Theme.text3
            font: Theme.caption
        }
    }
    PlainButton {
        objectName: "console"
        x: 344 - width
        y: 2
        text: "Console"
        symbol: "slider.horizontal.below.square.and.square.filled"
        symbolColor: Theme.legible(Theme.accent, 0)
        color: Theme.text1
        textFont: Theme.smallControl
        // Up into the room above it, for below it is what quits.
        reachAbove: 6
        reachBelow: 0
        label: "Open Sound Command Center"
        help: "⌘⇧C — Open Sound Command Center"
        onClicked: bar.shell.openFromPanel("command-center")
    }
    PlainButton {
        objectName: "about"
        x: 16
        y: 20
        text: "About Orvanta"
        reachAbove: 4
        reachBelow: 2
        label: "About Orvanta"
        onClicked: bar.shell.openFromPanel("about")
    }
    CheckForUpdatesButton {
        x: (parent.width - width) / 2 + 5
        y: 20
        reachAbove: 4
        reachBelow: 2
        shell: bar.shell
    }
    PlainButton {
        objectName: "quit"
        x: 344 - width
        y: 20
        text: "Quit Orvanta"
        // Down to the end of the window. What is above it must not quit when it is missed by a pixel.
        reachAbove: 0
        reachBelow: 2
        label: "Quit Orvanta"
        onClicked: bar.shell.quit()
    }
}
