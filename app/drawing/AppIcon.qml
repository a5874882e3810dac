import QtQuick
import Orvanta

/// The program's own icon; a symbol where its picture is not to be had.
Item {
    id: icon

    property int size: 26

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Image {
        id: picture

        anchors.fill: parent
        source: "qrc:/orvanta/appicon.svg"
        sourceSize: Qt.size(icon.size * Screen.devicePixelRatio, icon.size * Screen.devicePixelRatio)
        Accessible.ignored: true
    }
    SymbolGlyph {
        anchors.centerIn: parent
        visible: picture.status === Image.Error
        name: "waveform.circle.fill"
        size: 22
        color: Theme.accent
    }
}
