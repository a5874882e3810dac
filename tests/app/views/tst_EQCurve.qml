import QtQuick
import QtTest
import Orvanta

Item {
    id: stage

    width: 400
    height: 200

    property var gains: [0, 0, 0, 0, 0, 0, 0, 0, 0, 0]
    /// What hands wanted: bands and dB.
    property var story: []
    /// The band that was held when they wanted it.
    property int heldAtTheLast: -1

    EQCurveView {
        id: view

        x: 12
        y: 20
        width: implicitWidth
        height: implicitHeight
        gains: stage.gains
        bandNames: ["one", "two", "three", "four", "five", "six", "seven", "eight", "nine", "ten"]
        onGainChange: (band, gain) => {
            stage.story.push([band, gain]);
            stage.heldAtTheLast = draggingBand;
            const next = stage.gains.slice();
            next[band] = gain;
            stage.gains = next;
        }
    }

    TestCase {
        name: "EQCurve"
        when: windowShown

        function init() {
            view.enabled = true;
            view.height = view.implicitHeight;
            setGains([0, 0, 0, 0, 0, 0, 0, 0, 0, 0]);
            for (let band = 0; band < 10; ++band)
                handle(band).focus = false;
        }

        function setGains(gains) {
            stage.gains = gains;
            stage.story = [];
        }

        function handle(band) {
            return findChild(view, "handle" + band);
        }

        /// Of a handle, on the canvas.
        function middle(band) {
            return handle(band).mapToItem(view, 12, 12);
        }

        /// Where a gain is on the canvas of 160, whose drawing is 136 high for 28 dB.
        function heightOf(gain) {
            return 12 + (14 - gain) / 28 * 136;
        }

        function readOut(band) {
            return findChild(handle(band), "readOut");
        }

        /// What a hand there wants.
        function gainOf(height) {
            return 14 - (height - 12) / 136 * 28;
        }

        /// A hand is on whole pixels only.
        function pressBand(band, height) {
            mousePress(view, middle(band).x, height);
        }

        function moveBand(band, height) {
            mouseMove(view, middle(band).x, height);
        }

        function releaseBand(band) {
            mouseRelease(view, middle(band).x, middle(band).y);
        }

        function test_has_its_handles_at_their_frequencies_and_gains() {
            setGains([0, 12, -12, 3.5, 0, 0, 0, 0, 0, -6]);
            for (const [band, frequency] of [[0, 31], [1, 62], [2, 125], [3, 250], [9, 16000]]) {
                fuzzyCompare(middle(band).x, 12 + 352 * Math.log10(frequency / 20) / 3, 1e-3);
                fuzzyCompare(middle(band).y, heightOf(stage.gains[band]), 1e-3);
            }
        }

        function test_moves_its_handles_with_its_size() {
            setGains([0, 0, 14, 0, 0, 0, 0, 0, 0, 0]);
            view.height = 300;
            compare(middle(0).y, 150);
            compare(middle(2).y, 12);
        }

        function test_shows_a_gain_that_is_no_number_as_flat() {
            setGains([NaN, Infinity]);
            for (let band = 0; band < 10; ++band) {
                compare(handle(band).value, 0);
                fuzzyCompare(middle(band).y, 80, 1e-9);
            }
        }

        function test_brings_a_handle_to_the_pointer_at_once() {
            pressBand(4, 73);
            compare(stage.story.length, 1);
            compare(stage.story[0][0], 4);
            fuzzyCompare(stage.story[0][1], gainOf(73), 1e-9);
            releaseBand(4);
            compare(stage.story.length, 1);
        }

        function test_drags_without_steps() {
            pressBand(4, 80);
            for (const height of [79, 66, 97, 22]) {
                moveBand(4, height);
                fuzzyCompare(stage.story[stage.story.length - 1][1], gainOf(height), 1e-9);
                fuzzyCompare(middle(4).y, height, 1e-9);
            }
            releaseBand(4);
            compare(stage.story.length, 4);
            verify(stage.story.every(told => told[0] === 4));
        }

        function test_stops_a_drag_at_twelve_decibels() {
            pressBand(7, 80);
            mouseMove(view, middle(7).x, -15);
            compare(stage.story[stage.story.length - 1], [7, 12]);
            mouseMove(view, middle(7).x, 175);
            compare(stage.story[stage.story.length - 1], [7, -12]);
            mouseRelease(view, middle(7).x, 175);
        }

        function test_tells_which_band_is_dragged_while_it_is() {
            compare(view.draggingBand, -1);
            pressBand(2, 80);
            compare(view.draggingBand, 2);
            moveBand(2, 50);
            compare(stage.heldAtTheLast, 2);
            compare(view.draggingBand, 2);
            releaseBand(2);
            compare(view.draggingBand, -1);
            handle(2).forceActiveFocus();
            keyClick(Qt.Key_Up);
            compare(view.draggingBand, -1);
            compare(stage.heldAtTheLast, -1);
        }

        function test_takes_presses_on_its_handles_only() {
            setGains([0, 0, 0, 0, 9, 0, 0, 0, 0, 0]);
            mouseClick(view, middle(4).x, heightOf(0));
            mouseClick(view, (middle(4).x + middle(5).x) / 2, heightOf(0));
            compare(stage.story, []);
            mouseClick(view, middle(4).x + 11, 36);
            fuzzyCompare(handle(4).value, gainOf(36), 1e-9);
            verify(handle(4).activeFocus);
        }

        function test_reads_out_the_whole_decibels_above_what_is_dragged() {
            for (let band = 0; band < 10; ++band)
                verify(!readOut(band).visible);
            pressBand(5, 80);
            verify(readOut(5).visible);
            verify(!readOut(4).visible);
            // 3.9, -3.3, -0.4 and 15.2 dB.
            for (const [height, text] of [[61, "4"], [96, "-3"], [82, "0"], [6, "12"]]) {
                moveBand(5, height);
                compare(readOut(5).text, text);
            }
            // Clear of the ring, whose radius is 8.
            verify(readOut(5).mapToItem(handle(5), 0, readOut(5).height).y <= 12 - 8);
            releaseBand(5);
            verify(!readOut(5).visible);
        }

        function test_keeps_a_read_out_on_its_canvas() {
            pressBand(5, 80);
            moveBand(5, 0);
            compare(handle(5).value, 12);
            verify(readOut(5).mapToItem(view, 0, 0).y >= 0);
            releaseBand(5);
        }

        function test_makes_a_band_flat_by_a_double_click() {
            setGains([0, 0, 0, 0, 0, 0, 7, 0, 0, 0]);
            mouseDoubleClickSequence(view, middle(6).x, heightOf(7));
            compare(handle(6).value, 0);
            compare(stage.gains[6], 0);
        }

        function test_keeps_a_band_flat_while_the_second_press_is_held() {
            setGains([0, 0, 0, 0, 0, 0, 7, 0, 0, 0]);
            pressBand(6, 50);
            fuzzyCompare(stage.gains[6], gainOf(50), 1e-9);
            // The second press of two is let go of at once where a test makes them.
            const areas = Array.from(handle(6).children).filter(child => child instanceof MouseArea);
            compare(areas.length, 1);
            areas[0].doubleClicked(null);
            compare(stage.gains[6], 0);
            moveBand(6, 60);
            compare(stage.gains[6], 0);
            releaseBand(6);
            pressBand(6, 80);
            moveBand(6, 60);
            fuzzyCompare(stage.gains[6], gainOf(60), 1e-9);
            releaseBand(6);
        }

        function test_moves_by_whole_decibels_with_keys_data() {
            return [
                { tag: "up", key: Qt.Key_Up, gain: 1 },
                { tag: "right", key: Qt.Key_Right, gain: 1 },
                { tag: "down", key: Qt.Key_Down, gain: -1 },
                { tag: "left", key: Qt.Key_Left, gain: -1 },
                { tag: "page up", key: Qt.Key_PageUp, gain: 10 },
                { tag: "page down", key: Qt.Key_PageDown, gain: -10 },
                { tag: "home", key: Qt.Key_Home, gain: -12 },
                { tag: "end", key: Qt.Key_End, gain: 12 }
            ];
        }

        function test_moves_by_whole_decibels_with_keys(data) {
            handle(3).forceActiveFocus();
            keyClick(data.key);
            compare(stage.story, [[3, data.gain]]);
        }

        function test_comes_to_whole_decibels_by_key_from_between_them() {
            setGains([0, 0, 0, 2.25, 0, 0, 0, 0, 0, 0]);
            handle(3).forceActiveFocus();
            keyClick(Qt.Key_Up);
            compare(stage.story, [[3, 3]]);
        }

        function test_goes_from_band_to_band_with_tab_and_shows_where() {
            handle(0).forceActiveFocus(Qt.TabFocusReason);
            verify(handle(0).visualFocus);
            keyClick(Qt.Key_Tab);
            verify(handle(1).visualFocus);
            verify(!handle(0).visualFocus);
            mouseClick(view, middle(2).x, middle(2).y);
            verify(handle(2).activeFocus);
            verify(!handle(2).visualFocus);
        }

        function test_moves_one_step_with_the_wheel_over_a_handle_only() {
            mouseWheel(view, middle(8).x, middle(8).y, 0, 120);
            compare(stage.story, [[8, 1]]);
            mouseWheel(view, middle(8).x, heightOf(-8), 0, 120);
            compare(stage.story, [[8, 1]]);
        }

        function test_tells_tools_what_its_handles_are() {
            setGains([0, -4, 0, 0, 0, 0, 0, 0, 0, 0]);
            compare(handle(1).Accessible.role, Accessible.Slider);
            compare(handle(1).Accessible.name, "two");
            compare(handle(9).Accessible.name, "ten");
            compare(handle(1).Accessible.description, "-4 decibels");
            compare(handle(1).value, -4);
            compare(handle(1).minimumValue, -12);
            compare(handle(1).maximumValue, 12);
            compare(handle(1).stepSize, 1);
        }

        function test_takes_a_gain_from_a_tool() {
            handle(1).value = 6;
            compare(stage.story, [[1, 6]]);
            handle(1).value = 80;
            compare(stage.gains[1], 12);
        }

        function test_can_be_hit_within_twelve_of_a_handle_and_no_neighbour_reaches_into_that() {
            for (let band = 0; band < 10; ++band) {
                compare(handle(band).width, 24);
                compare(handle(band).height, 24);
                if (band > 0)
                    verify(middle(band).x - middle(band - 1).x >= 24);
            }
        }

        function test_does_nothing_while_it_is_disabled() {
            view.enabled = false;
            mouseClick(view, middle(0).x, heightOf(1));
            mouseWheel(view, middle(0).x, middle(0).y, 0, 120);
            compare(stage.story, []);
        }
    }
}
