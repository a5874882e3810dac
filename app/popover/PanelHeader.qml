import QtQuick
import Orvanta

/// What the program is, what there is to mix, and two switches for all of it.
Item {
    id: header

    required property MixerBridge mixer

    implicitHeight: 44

    AppIcon {
        x: 16
        y: 11
        size: 26
    }
    Label {
        x: 50
        y: 8
        text: "Orvanta"
        font: Theme.header
        Accessible.role: Accessible.Heading
    }
    CountsLine {
        x: 50
        y: 26
        mixer: header.mixer
    }
    PushButton {
        id: auto

        x: 250
        y: 12
        width: 62
        radius: height / 2
        text: "Auto"
        label: "Auto-tap"
        symbol: header.mixer.autoTapSymbol
        symbolColor: Theme.text2
        symbolSize: 15
        isLit: header.mixer.isAutoTapOn
        help: header.mixer.autoTapHelp
        hint: header.mixer.autoTapHint
        Accessible.role: Accessible.CheckBox
        Accessible.checkable: true
        Accessible.checked: header.mixer.isAutoTapOn
        onClicked: header.mixer.toggleAutoTap()
    }
    IconButton {
        x: 320
        y: 12
        symbol: "paintbrush.fill"
        size: 11
        radius: height / 2
        hasPlane: true
        restColor: Theme.text1
        symbolOpacity: isHovered || visualFocus ? 1 : Theme.textOpacity(0.7)
        label: "Switch theme"
        help: CurrentTheme.themeHelp
        onClicked: CurrentTheme.chooseNextTheme()
    }
}
