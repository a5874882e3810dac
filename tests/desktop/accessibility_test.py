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

    def test_every_page_of_the_welcome_names_its_way_on(self):
        self.launch(self.new_home())
        for way_on in ("Next", "Next", "Get Started"):
            self.views.wait_for(WELCOME, way_on, "push button")
            self.assert_everything_is_named(WELCOME, at_least=2)
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
