import QtQuick
import QtTest
import Orvanta

Item {
    id: stage

    width: 400
    height: 400

    property string chosen: "Speakers"
    property var triggered: []
    readonly property PopupMenu menu: button.openedMenu

    ListModel {
        id: devices
    }
    MenuButton {
        id: button

        x: 50
        y: 20
        width: 200
        text: stage.chosen
        label: "Output"
        value: stage.chosen
        menu: PopupMenu {
            PopupMenuItem {
                text: "System Default"
                isChosen: stage.chosen === text
                onTriggered: stage.triggered.push(text)
            }
            MenuDivider {}
            Repeater {
                model: devices

                PopupMenuItem {
                    required property string name

                    text: name
                    isChosen: stage.chosen === name
                    onTriggered: stage.triggered.push(name)
                }
            }
        }
    }

    TestCase {
        name: "Menus"
        when: windowShown

        function init() {
            devices.clear();
            for (const name of ["Headphones", "Speakers", "Television"])
                devices.append({ name: name });
            stage.chosen = "Speakers";
            stage.triggered = [];
        }

        function cleanup() {
            menu?.close();
            tryCompare(button, "isExpanded", false);
        }

        function open() {
            mouseClick(button);
            tryCompare(stage.menu, "opened", true);
        }

        function openByKey() {
            stage.forceActiveFocus();
            button.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryCompare(menu, "opened", true);
        }

        function itemOf(text) {
            for (let index = 0; index < menu.count; ++index)
                if (menu.itemAt(index).text === text)
                    return menu.itemAt(index);
            return null;
        }

        function test_opens_by_mouse_and_says_that_it_is_a_menu() {
            compare(button.Accessible.role, Accessible.ButtonMenu);
            compare(button.Accessible.name, "Output");
            compare(button.Accessible.description, "Speakers");
            verify(!menu.visible);
            open();
            compare(menu.count, 5);
        }

        function test_opens_where_its_button_ends() {
            open();
            const end = menu.contentItem.mapToItem(stage, menu.contentItem.width, 0);
            fuzzyCompare(end.x + menu.rightPadding, button.x + button.width, 1);
            verify(end.y >= button.y + button.height);
        }

        function test_is_as_wide_as_its_longest_entry() {
            devices.append({ name: "A Television With A Really Long Name In It" });
            open();
            for (let index = 0; index < menu.count; ++index)
                verify(menu.width >= menu.itemAt(index).implicitWidth);
        }

        function test_takes_an_entry_by_mouse() {
            open();
            mouseClick(itemOf("Television"));
            compare(stage.triggered, ["Television"]);
            tryCompare(menu, "visible", false);
        }

        function test_goes_through_its_entries_by_arrows_and_takes_one_by_enter_data() {
            return [
                { tag: "return", key: Qt.Key_Return },
                { tag: "enter", key: Qt.Key_Enter },
                { tag: "space", key: Qt.Key_Space }
            ];
        }

        function test_goes_through_its_entries_by_arrows_and_takes_one_by_enter(data) {
            openByKey();
            keyClick(Qt.Key_Down);
            verify(itemOf("System Default").highlighted);
            keyClick(Qt.Key_Down);
            verify(itemOf("Headphones").highlighted);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Up);
            verify(itemOf("Headphones").highlighted);
            keyClick(data.key);
            compare(stage.triggered, ["Headphones"]);
            tryCompare(menu, "visible", false);
        }

        function test_gives_the_keyboard_back_to_its_button() {
            openByKey();
            keyClick(Qt.Key_Escape);
            tryCompare(menu, "visible", false);
            compare(stage.triggered, []);
            verify(button.activeFocus);
        }

        function test_shows_the_ring_again_where_it_was_opened_by_key() {
            openByKey();
            keyClick(Qt.Key_Escape);
            tryCompare(menu, "visible", false);
            verify(button.visualFocus);
            open();
            keyClick(Qt.Key_Escape);
            tryCompare(menu, "visible", false);
            verify(button.activeFocus);
            verify(!button.visualFocus);
        }

        function test_says_whether_it_is_open() {
            verify(button.hasMenu);
            verify(!button.isExpanded);
            open();
            verify(button.isExpanded);
        }

        function test_is_no_wider_than_its_window() {
            devices.append({ name: "A Television With A Really Long Name In It ".repeat(4) });
            open();
            verify(menu.width <= stage.width);
            const start = menu.contentItem.mapToItem(stage, 0, 0);
            verify(start.x >= 0);
        }

        function test_does_nothing_by_an_entry_that_is_off() {
            open();
            const entry = itemOf("Television");
            tryVerify(() => entry.y > 0);
            entry.enabled = false;
            mouseClick(entry);
            compare(stage.triggered, []);
            entry.enabled = true;
        }

        function test_closes_when_the_mouse_is_pressed_elsewhere() {
            open();
            mouseClick(stage, 10, 390);
            tryCompare(menu, "visible", false);
            compare(stage.triggered, []);
        }

        function test_marks_what_is_chosen() {
            open();
            verify(itemOf("Speakers").Accessible.checked);
            verify(!itemOf("Headphones").Accessible.checked);
            verify(!itemOf("System Default").Accessible.checked);
            stage.chosen = "Headphones";
            verify(itemOf("Headphones").Accessible.checked);
            verify(!itemOf("Speakers").Accessible.checked);
            compare(itemOf("Speakers").Accessible.role, Accessible.MenuItem);
            compare(itemOf("Speakers").Accessible.name, "Speakers");
        }

        function test_loses_an_entry_while_it_is_open() {
            openByKey();
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            verify(itemOf("Headphones").highlighted);
            devices.remove(0);
            compare(menu.count, 4);
            compare(itemOf("Headphones"), null);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Escape);
            tryCompare(menu, "visible", false);
            compare(stage.triggered, []);
        }

        function test_gains_an_entry_while_it_is_open() {
            open();
            devices.append({ name: "Radio" });
            compare(menu.count, 6);
            mouseClick(itemOf("Radio"));
            compare(stage.triggered, ["Radio"]);
        }
    }
}
