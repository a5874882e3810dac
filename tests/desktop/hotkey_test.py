"""The hot keys, whoever has the keyboard."""

from support.desktop_test import CONSOLE, PANEL, DesktopTest, wait_until

MUTE_KEY = "super+shift+m"
CONSOLE_KEY = "super+shift+c"
OTHER = "Event Tester"
TAKEN = "Failed to register hotkey: -9878"


class HotKeyTest(DesktopTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.session.run(["xev"])

    def open_panel(self):
        program = self.launch_settled()
        self.views.wait_until_still(PANEL, "Switch theme")
        wait_until("the panel has the keyboard", lambda: self.views.is_active(PANEL))
        return program

    def turn_to_other_program(self, away_from=PANEL):
        self.session.xdotool("windowactivate", "--sync", self.wait_for_window(OTHER))
        wait_until(f"{away_from} has not the keyboard",
                   lambda: not self.views.is_active(away_from))

    def master_volume(self):
        return self.views.value(self.views.wait_for(PANEL, "Master volume", "slider"))

    def key(self, *keys):
        self.session.xdotool("key", *keys)

    def assert_each_press_turns_it_once(self):
        volume = self.master_volume()
        self.assertGreater(volume, 0.0)
        for _ in range(2):
            self.key(MUTE_KEY)
            self.views.wait_for(PANEL, "Unmute all")
            self.views.wait_for_value(PANEL, "Master volume", 0.0)
            self.key(MUTE_KEY)
            self.views.wait_for(PANEL, "Mute all")
            self.views.wait_for_value(PANEL, "Master volume", volume)
        # Without waiting in between, whatever a press did besides would undo it.
        self.key(*[MUTE_KEY] * 5)
        self.views.wait_for(PANEL, "Unmute all")
        self.key(MUTE_KEY)
        self.views.wait_for(PANEL, "Mute all")
        self.views.wait_for_value(PANEL, "Master volume", volume)

    def test_each_press_mutes_or_lets_go_while_the_panel_has_the_keyboard(self):
        self.open_panel()
        self.assert_each_press_turns_it_once()

    def test_each_press_mutes_or_lets_go_while_another_program_has_the_keyboard(self):
        self.open_panel()
        self.turn_to_other_program()
        self.assert_each_press_turns_it_once()

    def test_the_console_opens_over_another_program_and_comes_to_the_front_again(self):
        self.open_panel()
        for window in (PANEL, CONSOLE):
            self.turn_to_other_program(away_from=window)
            self.key(CONSOLE_KEY)
            self.wait_for_window(CONSOLE)
            wait_until("the console has the keyboard", lambda: self.views.is_active(CONSOLE))
            self.assertEqual(len(self.session.windows(CONSOLE)), 1)

    def test_each_press_still_mutes_or_lets_go_where_the_key_belongs_to_another(self):
        self.session.let_window_manager_have("W-S-m")
        self.addCleanup(self.session.let_window_manager_have)
        program = self.open_panel()
        self.assertIn(TAKEN, program.words())
        self.turn_to_other_program()
        self.assert_each_press_turns_it_once()
