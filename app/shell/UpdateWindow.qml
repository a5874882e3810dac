import QtQuick
import Orvanta

/// What has become of looking for a newer version, and what can be done about it.
SmallWindow {
    id: window

    required property UpdateBridge updates

    title: "Software Update"
    width: 400
    // As high as its words ask for, within reason: a reason why something failed can be long.
    height: words.y + words.height + 52

    Label {
        x: 24
        y: 24
        text: window.title
        font: Theme.header
        Accessible.role: Accessible.Heading
    }
    ScrolledText {
        id: words

        objectName: "words"
        x: 24
        y: 52
        width: parent.width - 40
        height: Math.min(Math.max(textHeight, 64), 240)
        text: window.updates.sentence
    }
    Row {
        x: parent.width - width - 24
        y: parent.height - height - 20
        spacing: 8

        PushButton {
            text: "Release Notes"
            visible: window.updates.canShowPage
            onClicked: window.updates.showPage()
        }
        PushButton {
            text: "Show File"
            visible: window.updates.canShowFile
            onClicked: window.updates.showFile()
        }
        PushButton {
            text: "Download"
            visible: window.updates.canDownload
            onClicked: window.updates.download()
        }
        PushButton {
            text: "Close"
            onClicked: {
                window.updates.dismiss();
                window.close();
            }
        }
    }
}
