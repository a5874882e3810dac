import QtQuick
import Orvanta

/// An application's icon as it comes, without a mask; a symbol where it has none.
Item {
    id: icon

    required property AppItem item
    property int size: 26

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    // Asked anew when the picture is another one.
    readonly property url file: item.iconKey === "" ? "" : item.iconFile(Math.round(size * Screen.devicePixelRatio))

    Image {
        id: picture

        anchors.fill: parent
        source: icon.file
        sourceSize: Qt.size(icon.size * Screen.devicePixelRatio, icon.size * Screen.devicePixelRatio)
        fillMode: Image.PreserveAspectFit
        asynchronous: true
        mipmap: true
        Accessible.ignored: true
    }
    Rectangle {
        anchors.fill: parent
        visible: picture.status === Image.Null || picture.status === Image.Error
        radius: Theme.radius
        color: Theme.control

        SymbolGlyph {
            anchors.centerIn: parent
            name: "app.fill"
            size: 12
            color: Theme.text3
        }
    }
}
