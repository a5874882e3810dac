import QtQuick
import QtTest
import Orvanta

Item {
    id: stage

    width: 400
    height: 300

    property int clicks: 0
    property var chosen: []

    component Counted: Connections {
        function onClicked() {
            ++stage.clicks;
        }
    }

    Column {
        spacing: 20

        PushButton {
            id: push

            text: "Push"
            Counted { target: push }
        }
        IconButton {
            id: icon

            symbol: "xmark"
            label: "Icon"
            Counted { target: icon }
        }
        PlainButton {
            id: plain

            text: "Plain"
            Counted { target: plain }
        }
        PrimaryButton {
            id: primary

            text: "Primary"
            Counted { target: primary }
        }
        Switch {
            id: toggle

            label: "Switch"
            Counted { target: toggle }
        }
        Segmented {
            id: picker

            names: ["One", "Two", "Three"]
            label: "Choice"
            onChose: index => {
                stage.chosen.push(index);
                chosen = index;
            }
        }
    }

    TestCase {
        name: "Buttons"
        when: windowShown

        function init() {
            for (const control of [push, icon, plain, primary, toggle])
                control.enabled = true;
            picker.chosen = 0;
            stage.clicks = 0;
            stage.chosen = [];
        }

        function all_data() {
            return [
                { tag: "push", button: push, name: "Push", role: Accessible.Button },
                { tag: "icon", button: icon, name: "Icon", role: Accessible.Button },
                { tag: "plain", button: plain, name: "Plain", role: Accessible.Button },
                { tag: "primary", button: primary, name: "Primary", role: Accessible.Button },
                { tag: "switch", button: toggle, name: "Switch", role: Accessible.CheckBox }
            ];
        }

        function test_is_pressed_by_the_mouse_data() {
            return all_data();
        }

        function test_is_pressed_by_the_mouse(data) {
            mouseClick(data.button);
            compare(stage.clicks, 1);
        }

        function test_is_pressed_by_each_press_of_a_quick_pair_data() {
            return all_data();
        }

        function test_is_pressed_by_each_press_of_a_quick_pair(data) {
            mouseDoubleClickSequence(data.button);
            compare(stage.clicks, 2);
        }

        function test_looks_pressed_while_it_is_held_data() {
            return all_data();
        }

        function test_looks_pressed_while_it_is_held(data) {
            verify(!data.button.isDown);
            mousePress(data.button);
            verify(data.button.isDown);
            mouseMove(data.button, 300, 0);
            verify(!data.button.isDown);
            mouseMove(data.button, 1, 1);
            verify(data.button.isDown);
            mouseRelease(data.button, 1, 1);
            verify(!data.button.isDown);
            compare(stage.clicks, 1);
        }

        function test_acts_when_space_is_let_go_of_data() {
            return all_data();
        }

        function test_acts_when_space_is_let_go_of(data) {
            data.button.forceActiveFocus();
            keyPress(Qt.Key_Space);
            verify(data.button.isDown);
            compare(stage.clicks, 0);
            keyRelease(Qt.Key_Space);
            verify(!data.button.isDown);
            compare(stage.clicks, 1);
        }

        function test_forgets_space_when_the_keyboard_goes_elsewhere() {
            push.forceActiveFocus();
            keyPress(Qt.Key_Space);
            icon.forceActiveFocus();
            verify(!push.isDown);
            keyRelease(Qt.Key_Space);
            compare(stage.clicks, 0);
        }

        function test_knows_when_the_pointer_is_over_it_data() {
            return all_data();
        }

        function test_knows_when_the_pointer_is_over_it(data) {
            mouseMove(data.button);
            verify(data.button.isHovered);
            mouseMove(stage, 399, 299);
            verify(!data.button.isHovered);
        }

        function test_is_let_go_of_outside_without_effect_data() {
            return all_data();
        }

        function test_is_let_go_of_outside_without_effect(data) {
            mousePress(data.button);
            mouseMove(data.button, 300, 0);
            mouseRelease(data.button, 300, 0);
            compare(stage.clicks, 0);
        }

        function test_is_pressed_by_space_return_and_enter_data() {
            return all_data();
        }

        function test_is_pressed_by_space_return_and_enter(data) {
            data.button.forceActiveFocus();
            keyClick(Qt.Key_Space);
            compare(stage.clicks, 1);
            keyClick(Qt.Key_Return);
            compare(stage.clicks, 2);
            keyClick(Qt.Key_Enter);
            compare(stage.clicks, 3);
            keyClick(Qt.Key_A);
            compare(stage.clicks, 3);
        }

        function test_does_nothing_while_it_is_disabled_data() {
            return all_data();
        }

        function test_does_nothing_while_it_is_disabled(data) {
            data.button.forceActiveFocus();
            data.button.enabled = false;
            mouseClick(data.button);
            keyClick(Qt.Key_Space);
            keyClick(Qt.Key_Return);
            compare(stage.clicks, 0);
        }

        function test_has_a_role_and_a_name_data() {
            return all_data();
        }

        function test_has_a_role_and_a_name(data) {
            compare(data.button.Accessible.role, data.role);
            compare(data.button.Accessible.name, data.name);
        }

        function test_shows_its_ring_for_the_keyboard_only_data() {
            return all_data();
        }

        function test_shows_its_ring_for_the_keyboard_only(data) {
            mouseClick(data.button);
            verify(!data.button.visualFocus);
            stage.forceActiveFocus();
            data.button.forceActiveFocus(Qt.TabFocusReason);
            verify(data.button.visualFocus);
        }

        function test_is_no_smaller_than_it_can_be_aimed_at_data() {
            return all_data();
        }

        function test_is_no_smaller_than_it_can_be_aimed_at(data) {
            const button = data.button;
            const x = button.width / 2;
            const y = button.height / 2;
            for (const [dx, dy] of [[-11, 0], [11, 0], [0, -11], [0, 11]])
                mouseClick(button, x + dx, y + dy);
            compare(stage.clicks, 4);
        }

        function test_says_value_and_hint_together() {
            push.value = "Half";
            push.hint = "Twice as much";
            compare(push.Accessible.description, "Half. Twice as much");
            push.value = "";
            compare(push.Accessible.description, "Twice as much");
            push.hint = "";
            compare(push.Accessible.description, "");
        }

        function test_asks_before_it_switches() {
            verify(!toggle.isOn);
            mouseClick(toggle);
            verify(!toggle.isOn);
            toggle.isOn = true;
            verify(toggle.Accessible.checked);
            toggle.isOn = false;
            verify(!toggle.Accessible.checked);
        }

        function segment(index) {
            return findChild(picker, "segment" + index);
        }

        function test_chooses_the_segment_that_is_pressed() {
            mouseClick(segment(2));
            compare(stage.chosen, [2]);
            verify(segment(2).Accessible.checked);
            verify(!segment(0).Accessible.checked);
            compare(segment(2).Accessible.role, Accessible.RadioButton);
            compare(segment(2).Accessible.name, "Three");
        }

        function test_goes_to_the_neighbour_by_arrows_and_takes_the_keyboard_along() {
            segment(0).forceActiveFocus();
            keyClick(Qt.Key_Right);
            compare(stage.chosen, [1]);
            verify(segment(1).activeFocus);
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Right);
            compare(picker.chosen, 2);
            verify(segment(2).activeFocus);
            keyClick(Qt.Key_Left);
            compare(picker.chosen, 1);
            keyClick(Qt.Key_Left);
            keyClick(Qt.Key_Left);
            compare(picker.chosen, 0);
        }
    }
}
