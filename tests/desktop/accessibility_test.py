"""What somebody finds who sees the windows through an assistive tool."""

from support.desktop_test import ABOUT, PANEL, WELCOME, DesktopTest, wait_until

NO_ROLES = ("", "invalid", "unknown")


class AccessibilityTest(DesktopTest):
    def controls(self, title):
        """What can be seen in a window and be pressed, moved or focused."""
        return [node for node in self.views.all(title)
                if self.views.is_showing(node) and
                (self.views.actions(node) or self.views.is_slider(node) or
                 self.views.is_focusable(node))]

    def assert_everything_is_named(self, title, at_least):
        controls = self.controls(title)
        self.assertGreaterEqual(len(controls), at_least)
        for node in controls:
            with self.subTest(window=title, place=self.views.box(node)):
                self.assertNotIn(node.getRoleName(), NO_ROLES, f"the role of {node.name}")
                self.assertTrue(node.name.strip(), f"a {node.getRoleName()} without a name")
        for node in controls:
            if not self.views.is_slider(node):
                continue
            with self.subTest(window=title, slider=node.name):
                numbers = node.queryValue()
                self.assertLess(numbers.minimumValue, numbers.maximumValue)
                self.assertGreaterEqual(numbers.currentValue, numbers.minimumValue)
                self.assertLessEqual(numbers.currentValue, numbers.maximumValue)

    def test_the_panel_names_everything_that_can_be_pressed(self):
        self.launch_settled()
        self.views.wait_for(PANEL, "Tap Forgotten Isles audio")
        self.assert_everything_is_named(PANEL, at_least=14)

    def test_a_row_with_everything_unfolded_names_all_of_it(self):
        self.launch_settled()
        self.views.click(PANEL, "Tap Forgotten Isles audio")
        self.views.wait_for(PANEL, "Forgotten Isles volume", "slider")
        self.views.click(PANEL, "Noise gate for Forgotten Isles")
        self.views.wait_for(PANEL, "Noise gate threshold", "slider")
        self.views.press(PANEL, "Advanced")
        self.views.wait_for(PANEL, "Thresh compressor", "slider")
        self.views.click(PANEL, "Equalizer for Forgotten Isles")
        self.views.click(PANEL, "Switch to 10-band EQ")
        self.views.wait_for(PANEL, "1K Hz EQ for Forgotten Isles", "slider")
        # Master, volume, ten bands and balance besides the buttons.
        self.assert_everything_is_named(PANEL, at_least=13 + 14)
        self.assertEqual(self.count_sliders("Hz EQ for Forgotten Isles"), 10)
        self.session.xdotool("mousemove",
                             *self.views.middle(self.views.wait_for(PANEL, "Noise Gate")),
                             "click", "--repeat", 10, "--delay", 20, 5)
        wait_until("the compressor's bands are in sight",
                   lambda: self.count_sliders(" compressor") == 9)
        self.assert_everything_is_named(PANEL, at_least=9 + 9)

    def count_sliders(self, ending):
        return sum(node.name.endswith(ending) for node in self.controls(PANEL)
                   if self.views.is_slider(node))

    def test_the_about_window_names_everything_that_can_be_pressed(self):
        self.launch_settled()
        self.views.click(PANEL, "About Orvanta")
        self.views.wait_for(ABOUT, "Meridane")
        self.assert_everything_is_named(ABOUT, at_least=4)

    def headings(self, title):
        return [node.name for node in self.views.all(title)
                if node.getRoleName() == "heading" and self.views.is_showing(node)]

    def test_every_page_of_the_welcome_names_its_way_on_and_is_told_alone(self):
        self.launch(self.new_home())
        titles = iter(("Welcome to Orvanta", "How It Works", "Ready to explore"))
        for way_on in ("Next", "Next", "Get Started"):
            self.views.wait_for(WELCOME, way_on, "push button")
            self.assert_everything_is_named(WELCOME, at_least=2)
            self.assertEqual(self.headings(WELCOME), [next(titles)])
            self.views.click(WELCOME, way_on)
        self.wait_until_gone(WELCOME)

    def test_a_press_by_an_assistive_tool_taps_a_program(self):
        self.launch_settled()
        self.views.press(PANEL, "Tap Forgotten Isles audio")
        self.views.wait_for(PANEL, "Remove tap from Forgotten Isles")
        self.views.press(PANEL, "Remove tap from Forgotten Isles")
        self.views.wait_for(PANEL, "Tap Forgotten Isles audio")

    def test_a_value_written_by_an_assistive_tool_is_the_volume(self):
        self.launch_settled()
        self.views.click(PANEL, "Tap Forgotten Isles audio")
        slider = self.views.wait_for(PANEL, "Forgotten Isles volume", "slider")
        slider.queryValue().currentValue = 1.5
        self.views.wait_for_value(PANEL, "Forgotten Isles volume", 1.5)
        self.views.wait_for_description(PANEL, "Forgotten Isles volume", "150 percent, boosted")

    def tap(self):
        self.views.click(PANEL, "Tap Forgotten Isles audio")
        self.views.wait_for(PANEL, "Forgotten Isles volume", "slider")

    def test_everything_is_told_as_what_it_is(self):
        self.launch_settled()
        self.tap()
        for name, role in (("Noise gate for Forgotten Isles", "check box"),
                           ("Auto-tap", "check box"),
                           ("Launch at login", "check box"),
                           ("Mute Forgotten Isles", "push button"),
                           ("Level of Forgotten Isles", "progress bar"),
                           ("Master volume", "slider"),
                           ("Playing", "heading"),
                           ("Applications", "list"),
                           ("Forgotten Isles", "list item")):
            with self.subTest(name=name):
                self.views.wait_for(PANEL, name, role)

    def test_a_switch_is_toggled_by_an_assistive_tool(self):
        self.launch_settled()
        self.tap()
        gate = "Noise gate for Forgotten Isles"

        def is_on():
            return self.views.is_checked(self.views.wait_for(PANEL, gate, "check box"))
        self.assertFalse(is_on())
        self.views.press(PANEL, gate, "Toggle")
        wait_until("it is on", is_on)
        self.views.press(PANEL, gate, "Press")
        wait_until("it is off", lambda: not is_on())

    def test_what_unfolds_says_whether_it_has(self):
        self.launch_settled()
        self.tap()

        def is_expanded(name):
            return self.views.is_expanded(self.views.wait_for(PANEL, name))
        self.assertIsNone(is_expanded("Mute Forgotten Isles"))
        for name in ("Equalizer for Forgotten Isles", "Output device for Forgotten Isles"):
            with self.subTest(name=name):
                self.assertIs(is_expanded(name), False)
                self.views.press(PANEL, name)
                wait_until(f"{name} is unfolded", lambda: is_expanded(name))
        # Made under the eyes of the tool: the toolkit says then what it thinks of an entry itself.
        for entry, is_chosen in (("System Default", True), ("Tide Buds", False)):
            node = self.views.wait_for(PANEL, entry, "menu item")
            self.assertIs(self.views.is_checked(node), is_chosen, entry)
        self.session.xdotool("key", "Escape")
        wait_until("the menu is closed",
                   lambda: is_expanded("Output device for Forgotten Isles") is False)

    def test_what_is_off_is_told_as_such(self):
        self.launch_settled()
        # This build knows no place to look for updates.
        self.assertFalse(self.views.is_enabled(self.views.wait_for(PANEL, "Check for updates")))
        self.assertTrue(self.views.is_enabled(self.views.wait_for(PANEL, "About Orvanta")))

    def test_the_theme_is_one_of_two(self):
        self.launch_settled()
        self.views.click(PANEL, "About Orvanta")

        def chosen():
            return [name for name in ("Classic", "Meridane") if self.views.is_checked(
                self.views.wait_for(ABOUT, name, "radio button"))]
        self.assertEqual(chosen(), ["Classic"])
        self.views.press(ABOUT, "Meridane")
        wait_until("the other one is chosen", lambda: chosen() == ["Meridane"])

    def test_a_slider_tells_of_its_value_and_a_meter_only_answers(self):
        self.launch_settled()
        self.tap()
        with self.views.heard("object:property-change:accessible-value") as names:
            wait_until("there is a level", lambda: self.views.value(
                self.views.wait_for(PANEL, "Level of Forgotten Isles", "progress bar")) > 0.01)
            level = self.views.value(self.views.wait_for(PANEL, "Level of Forgotten Isles"))
            wait_until("the level moves", lambda: self.views.value(
                self.views.wait_for(PANEL, "Level of Forgotten Isles")) != level)
            self.views.press(PANEL, "Forgotten Isles volume", "Decrease")
            wait_until("the volume is told", lambda: "Forgotten Isles volume" in names())
            self.assertNotIn("Level of Forgotten Isles", names())
