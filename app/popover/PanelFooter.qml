import QtQuick
import Orvanta

/// Silence at once, and whether the program comes with the session.
Item {
    id: footer

    required property MixerBridge mixer

    implicitHeight: 38

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.divider
    }
    PushButton {
        objectName: "muteAll"
        x: 8
        y: 7
        width: 168
        text: footer.mixer.muteAllText
        label: footer.mixer.muteAllLabel
        symbol: footer.mixer.muteAllSymbol
        symbolColor: footer.mixer.isMasterMuted ? Theme.legible(Theme.red, 0) : Theme.text2
        help: "⌘⇧M — Mute/unmute all audio"
        hint: "Keyboard shortcut: Command Shift M"
        onClicked: footer.mixer.toggleMuteAll()
    }
    PushButton {
        objectName: "launchAtLogin"
        x: 184
        y: 7
        width: 168
        text: "Launch at Login"
        label: "Launch at login"
        symbol: footer.mixer.launchAtLoginSymbol
        symbolColor: footer.mixer.launchesAtLogin ? Theme.legible(Theme.accent, 0) : Theme.text2
        Accessible.role: Accessible.CheckBox
        Accessible.checkable: true
        Accessible.checked: footer.mixer.launchesAtLogin
        onClicked: footer.mixer.toggleLaunchAtLogin()
    }
    Rectangle {
        y: 37
        width: parent.width
        height: 1
        color: Theme.divider
    }
}
