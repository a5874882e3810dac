import QtQuick
import Orvanta

/// A menu that is made when it opens for the first time: a list of many rows has several for each,
/// and hardly any of them ever opens.
QtObject {
    required property Component menu
    property PopupMenu made: null
    readonly property bool isOpen: made?.visible ?? false

    function openFor(button: Item) {
        if (made === null)
            made = menu.createObject(button) as PopupMenu;
        made.openFor(button);
    }
}
