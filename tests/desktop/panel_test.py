"""The panel under a real mouse and a real keyboard."""

from support.desktop_test import ABOUT, PANEL, DesktopTest, wait_until

PROGRAM = "Forgotten Isles"
VOLUME = f"{PROGRAM} volume"


class PanelTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.launch_settled()

    def tap(self):
        self.views.click(PANEL, f"Tap {PROGRAM} audio")
        self.views.wait_for(PANEL, VOLUME, "slider")

    def slider(self, name):
        return self.views.value(self.views.wait_for(PANEL, name, "slider"))

    def key(self, *keys):
        self.session.xdotool("key", *keys)

    def test_the_hand_drags_the_volume_of_a_program(self):
        self.tap()
        self.assertEqual(self.slider(VOLUME), 1.0)
        self.views.drag_slider(PANEL, VOLUME, 0.25)
        self.views.wait_for_value(PANEL, VOLUME, 0.25)
        self.views.wait_for_description(PANEL, VOLUME, "25 percent")

    def test_the_hand_drags_the_volume_of_everything(self):
        self.views.drag_slider(PANEL, "Master volume", 0.4)
        self.views.wait_for_value(PANEL, "Master volume", 0.4)
        self.views.wait_for_description(PANEL, "Master volume", "40 percent")

    def test_keys_move_the_volume_of_a_program_step_by_step(self):
        self.tap()
        self.session.click(*self.views.place_of(PANEL, VOLUME, 1.0))
        for keys, value in ((["Right"], 1.01), (["Left", "Left"], 0.99), (["Prior"], 1.09),
                            (["Next"], 0.99), (["End"], 2.0), (["Home"], 0.0)):
            with self.subTest(keys=keys):
                self.key(*keys)
                self.views.wait_for_value(PANEL, VOLUME, value)

    def test_mute_all_mutes_and_lets_go(self):
        self.views.click(PANEL, "Mute all")
        self.views.click(PANEL, "Unmute all")
        self.views.wait_for(PANEL, "Mute all")

    def test_a_program_is_muted_by_its_own_button(self):
        self.tap()
        self.views.click(PANEL, f"Mute {PROGRAM}")
        self.views.click(PANEL, f"Unmute {PROGRAM}")
        self.views.wait_for(PANEL, f"Mute {PROGRAM}")

    def test_launch_at_login_shows_what_it_is_set_to(self):
        def is_on():
            return self.views.is_checked(self.views.wait_for(PANEL, "Launch at login"))
        self.assertFalse(is_on())
        self.views.click(PANEL, "Launch at login")
        wait_until("it is set", is_on)
        self.views.click(PANEL, "Launch at login")
        wait_until("it is not set any more", lambda: not is_on())

    def test_about_opens_from_the_status_bar_and_the_panel_gives_way(self):
        self.views.click(PANEL, "About Orvanta")
        self.wait_for_window(ABOUT)
        self.wait_until_gone(PANEL)

    def test_escape_closes_the_about_window(self):
        self.views.click(PANEL, "About Orvanta")
        self.views.wait_until_still(ABOUT, "Close")
        self.key("Escape")
        self.wait_until_gone(ABOUT)

    def test_the_cross_closes_the_about_window(self):
        self.views.click(PANEL, "About Orvanta")
        self.views.click(ABOUT, "Close")
        self.wait_until_gone(ABOUT)

    def test_a_second_start_shows_the_panel_again(self):
        self.views.click(PANEL, "About Orvanta")
        self.wait_until_gone(PANEL)
        second = self.launch(self.programs[0].home)
        self.assertEqual(second.wait_for_end(), 0)
        self.wait_for_window(PANEL)

    def test_escape_closes_the_panel_and_a_second_start_brings_it_back(self):
        self.views.wait_until_still(PANEL, "Switch theme")
        self.key("Escape")
        self.wait_until_gone(PANEL)
        self.programs[0].wait_for_rest()
        self.assertEqual(self.launch(self.programs[0].home).wait_for_end(), 0)
        self.views.wait_for(PANEL, "Master volume", "slider")


class KeyboardTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.launch_settled()
        self.views.wait_until_still(PANEL, "Switch theme")

    def key(self, *keys):
        self.session.xdotool("key", *keys)

    def next_stop(self, key="Tab"):
        """Where the key takes the keyboard."""
        before = self.place_of_focus()
        self.key(key)
        wait_until("the keyboard has gone on", lambda: self.place_of_focus() not in (None, before))
        return self.views.focused(PANEL)

    def place_of_focus(self):
        node = self.views.focused(PANEL)
        return node and (node.name, self.views.box(node))

    def around(self, key="Tab"):
        """Names and places of what the keyboard comes to, once around the panel."""
        found = []
        while True:
            node = self.next_stop(key)
            stop = (node.name, self.views.box(node))
            if stop in found:
                return
            found.append(stop)
            yield stop

    def pressable(self):
        return {node.name for node in self.views.all(PANEL)
                if self.views.is_showing(node) and self.views.is_enabled(node) and
                (self.views.is_slider(node) or "Press" in self.views.actions(node))}

    def assert_is_reading_order(self, stops):
        first = min(range(len(stops)), key=lambda index: stops[index][1][1] + stops[index][1][0] / 1e4)
        stops = stops[first:] + stops[:first]
        for (name, (x, y, _, height)), (following, (next_x, next_y, _, next_height)) in \
                zip(stops, stops[1:]):
            is_below = next_y + next_height / 2 >= y + height
            is_beside = next_x > x and abs(next_y + next_height / 2 - y - height / 2) < 12
            self.assertTrue(is_below or is_beside, f"{following} comes after {name}")

    def test_tab_reaches_every_control_in_reading_order(self):
        stops = list(self.around())
        self.assertEqual({name for name, _ in stops}, self.pressable())
        self.assert_is_reading_order(stops)

    def test_tab_goes_through_a_tapped_row_from_top_to_bottom(self):
        self.views.press(PANEL, f"Tap {PROGRAM} audio")
        self.views.wait_until_still(PANEL, VOLUME)
        names = [name for name, _ in self.around()]
        self.assertEqual(set(names), self.pressable())
        first = names.index(f"Record {PROGRAM} audio")
        self.assertEqual((names + names)[first:first + 10], [
            f"Record {PROGRAM} audio", f"Remove tap from {PROGRAM}", f"Mute {PROGRAM}", VOLUME,
            f"Output device for {PROGRAM}", f"Equalizer for {PROGRAM}",
            f"Stereo balance for {PROGRAM}", f"Noise gate for {PROGRAM}",
            f"Compressor preset for {PROGRAM}", "Advanced"])

    def test_the_list_follows_the_keyboard(self):
        self.views.press(PANEL, f"Tap {PROGRAM} audio")
        self.views.wait_until_still(PANEL, VOLUME)
        top = self.views.box(self.views.wait_for(PANEL, "Master volume"))[1]
        bottom = self.views.box(self.views.wait_for(PANEL, "Mute all"))[1]
        for key in ("Tab", "shift+Tab"):
            for name, _ in self.around(key):
                if not name.startswith("Tap "):
                    continue
                with self.subTest(key=key, stop=name):
                    wait_until("it is in sight", lambda: self.is_between(name, top, bottom))

    def is_between(self, name, top, bottom):
        node = self.views.find(PANEL, name)
        if node is None:
            return False
        _, y, _, height = self.views.box(node)
        return top < y and y + height < bottom

    def test_space_taps_and_arrows_ride_the_volume(self):
        while self.next_stop().name != f"Tap {PROGRAM} audio":
            pass
        self.key("space")
        self.views.wait_until_still(PANEL, VOLUME)
        while self.next_stop().name != VOLUME:
            pass
        self.key("Left", "Left", "Left")
        self.views.wait_for_value(PANEL, VOLUME, 0.97)

    def test_return_opens_a_menu_and_arrows_choose_from_it(self):
        self.views.press(PANEL, f"Tap {PROGRAM} audio")
        self.views.wait_until_still(PANEL, VOLUME)
        output = f"Output device for {PROGRAM}"
        while self.next_stop().name != output:
            pass
        self.key("Return")
        self.views.wait_for(PANEL, "Tide Buds", "menu item")
        self.key("Down", "Down", "Down", "Return")
        self.views.wait_for_description(PANEL, output, "Tide Buds")
