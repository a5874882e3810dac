import QtQuick
import QtTest
import Orvanta

Item {
    id: stage

    width: 400
    height: 300

    property var story: []

    component Told: Connections {
        function onBegan() {
            stage.story.push("began");
        }
        function onMoved(value: real) {
            stage.story.push("moved " + value.toFixed(2));
        }
        function onEnded() {
            stage.story.push("ended");
        }
    }

    ValueSlider {
        id: slider

        x: 100
        y: 20
        width: 200
        label: "Depth"
        valueText: "as deep as it is"
        Told { target: slider }
    }
    VolumeSlider {
        id: volume

        x: 100
        y: 60
        width: 200
        label: "Volume"
        Told { target: volume }
    }
    BandFader {
        id: fader

        x: 20
        y: 100
        width: 24
        height: 96
        label: "Band"
        Told { target: fader }
    }

    TestCase {
        name: "Sliders"
        when: windowShown

        function init() {
            for (const control of [slider, volume, fader]) {
                control.enabled = true;
                control.focus = false;
            }
            slider.minimumValue = 0;
            slider.maximumValue = 1;
            slider.stepSize = 0.01;
            setModel(slider, 0.5);
            setModel(volume, 1);
            setModel(fader, 0);
            stage.story = [];
        }

        /// Also where the model has it already.
        function setModel(control, value) {
            control.modelValue = -1000;
            control.modelValue = value;
        }

        function expectStory(...expected) {
            compare(stage.story, expected);
            stage.story = [];
        }

        function test_shows_what_the_model_has() {
            setModel(slider, 0.25);
            compare(slider.value, 0.25);
            expectStory();
        }

        function test_keeps_the_grip_when_its_cap_is_dragged() {
            mousePress(slider, 104, 8);
            compare(slider.value, 0.5);
            expectStory("began");
            mouseMove(slider, 124, 8);
            expectStory("moved 0.60");
            mouseMove(slider, 104, 8);
            expectStory("moved 0.50");
            mouseRelease(slider, 104, 8);
            expectStory("ended");
        }

        function test_jumps_to_a_press_on_its_track() {
            mousePress(slider, 40, 8);
            expectStory("began", "moved 0.20");
            mouseMove(slider, 60, 8);
            expectStory("moved 0.30");
            mouseRelease(slider, 60, 8);
            expectStory("ended");
        }

        function test_is_hit_above_and_below_where_it_is_drawn() {
            mousePress(slider, 40, -3);
            expectStory("began", "moved 0.20");
            mouseRelease(slider, 40, -3);
            mousePress(slider, 60, 18);
            compare(slider.value, 0.3);
            mouseRelease(slider, 60, 18);
        }

        function test_tells_only_of_moves_that_change_something() {
            mousePress(slider, 40, 8);
            mouseMove(slider, 40, 2);
            mouseMove(slider, 40.4, 14);
            mouseRelease(slider, 40, 8);
            expectStory("began", "moved 0.20", "ended");
        }

        function test_stays_in_its_range() {
            mousePress(slider, 100, 8);
            mouseMove(slider, 500, 8);
            compare(slider.value, 1);
            mouseMove(slider, -300, 8);
            compare(slider.value, 0);
            mouseRelease(slider, -300, 8);
            keyClick(Qt.Key_Left);
            compare(slider.value, 0);
            keyClick(Qt.Key_End);
            keyClick(Qt.Key_Right);
            compare(slider.value, 1);
        }

        function test_snaps_to_its_steps() {
            slider.stepSize = 0.25;
            mousePress(slider, 60, 8);
            compare(slider.value, 0.25);
            mouseMove(slider, 74, 8);
            compare(slider.value, 0.25);
            mouseMove(slider, 76, 8);
            compare(slider.value, 0.5);
            mouseRelease(slider, 76, 8);
        }

        function test_counts_its_steps_from_its_least_value() {
            slider.minimumValue = -80;
            slider.maximumValue = -20;
            slider.stepSize = 1;
            setModel(slider, -60);
            mousePress(slider, 101, 8);
            compare(slider.value, -50);
            mouseRelease(slider, 101, 8);
        }

        function test_moves_by_keys_data() {
            return [
                { tag: "right", key: Qt.Key_Right, value: 0.51 },
                { tag: "up", key: Qt.Key_Up, value: 0.51 },
                { tag: "left", key: Qt.Key_Left, value: 0.49 },
                { tag: "down", key: Qt.Key_Down, value: 0.49 },
                { tag: "page up", key: Qt.Key_PageUp, value: 0.6 },
                { tag: "page down", key: Qt.Key_PageDown, value: 0.4 },
                { tag: "home", key: Qt.Key_Home, value: 0 },
                { tag: "end", key: Qt.Key_End, value: 1 }
            ];
        }

        function test_moves_by_keys(data) {
            slider.forceActiveFocus();
            keyClick(data.key);
            fuzzyCompare(slider.value, data.value, 1e-9);
            expectStory("began", "moved " + data.value.toFixed(2), "ended");
        }

        function test_leaves_other_keys_alone() {
            slider.forceActiveFocus();
            keyClick(Qt.Key_A);
            keyClick(Qt.Key_Return);
            expectStory();
        }

        function test_moves_one_step_with_a_notch_of_the_wheel() {
            mouseWheel(slider, 100, 8, 0, 120);
            expectStory("began", "moved 0.51", "ended");
            mouseWheel(slider, 100, 8, 0, -120);
            expectStory("began", "moved 0.50", "ended");
        }

        function test_adds_up_the_parts_of_a_notch() {
            mouseWheel(slider, 100, 8, 0, 60);
            expectStory();
            mouseWheel(slider, 100, 8, 0, 60);
            expectStory("began", "moved 0.51", "ended");
        }

        function test_takes_a_value_from_an_assistive_tool_as_a_whole_drag() {
            slider.value = 0.704;
            compare(slider.value, 0.7);
            expectStory("began", "moved 0.70", "ended");
            slider.value = 17;
            compare(slider.value, 1);
            expectStory("began", "moved 1.00", "ended");
        }

        function test_does_not_listen_to_the_model_while_it_is_held() {
            mousePress(slider, 40, 8);
            slider.modelValue = 0.9;
            compare(slider.value, 0.2);
            mouseMove(slider, 50, 8);
            compare(slider.value, 0.25);
            mouseRelease(slider, 50, 8);
            slider.modelValue = 0.8;
            compare(slider.value, 0.8);
        }

        function test_shows_again_what_the_model_keeps_to() {
            mouseClick(slider, 40, 8);
            compare(slider.value, 0.2);
            tryCompare(slider, "value", 0.5);
        }

        function test_takes_the_keyboard_when_it_is_pressed_without_a_ring() {
            mouseClick(slider, 100, 8);
            verify(slider.activeFocus);
            verify(!slider.visualFocus);
        }

        function test_does_nothing_while_it_is_disabled() {
            slider.enabled = false;
            mouseClick(slider, 40, 8);
            mouseWheel(slider, 100, 8, 0, 120);
            expectStory();
            compare(slider.value, 0.5);
        }

        function test_has_a_name_and_a_value_in_words() {
            compare(slider.Accessible.role, Accessible.Slider);
            compare(slider.Accessible.name, "Depth");
            compare(slider.Accessible.description, "as deep as it is");
        }

        function test_goes_to_two_for_volumes_with_unity_in_the_middle() {
            compare(volume.share, 0.5);
            volume.forceActiveFocus();
            keyClick(Qt.Key_End);
            compare(volume.value, 2);
            mouseClick(volume, 100, 8);
            compare(volume.value, 1);
        }

        function test_goes_upwards_where_it_stands() {
            compare(fader.capPosition, 48);
            mousePress(fader, 12, 24);
            compare(fader.value, 6);
            mouseMove(fader, 12, 0);
            compare(fader.value, 12);
            mouseMove(fader, 12, 200);
            compare(fader.value, -12);
            mouseRelease(fader, 12, 200);
            keyClick(Qt.Key_Up);
            compare(fader.value, -11.5);
            keyClick(Qt.Key_PageUp);
            compare(fader.value, -6.5);
        }
    }
}
