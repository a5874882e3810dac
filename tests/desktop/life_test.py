"""How the program comes, stays and goes: starts, ends, and desktops that lack something."""

import re
import signal

from support.desktop_test import ABOUT, CONSOLE, PANEL, WELCOME, DesktopTest, wait_until

NO_BUS = "unix:path=/nonexistent/bus"


def crash_reports(program):
    """An empty one was prepared only."""
    return [file for file in program.home.rglob("*crash*.log") if file.stat().st_size > 0]


class LifeTest(DesktopTest):
    def wait_for_theme(self, chosen, other):
        """As the about window shows them."""
        def is_so():
            names = {name: self.views.find(ABOUT, name) for name in (chosen, other)}
            return all(names.values()) and self.views.is_checked(names[chosen]) and \
                not self.views.is_checked(names[other])
        wait_until(f"the theme is {chosen}", is_so)

    @staticmethod
    def wait_for_pace(program, pace):
        """At which the mixer reads levels; it tells of each change."""
        wait_until(f"levels are read at {pace}",
                   lambda: re.findall(r"timer: (\S+) tapped=1", program.words())[-1:] == [pace])

    def test_the_about_window_sets_the_theme_back(self):
        program = self.launch_settled()
        self.views.click(PANEL, "About Orvanta")
        self.views.click(ABOUT, "Meridane")
        self.wait_for_theme("Meridane", "Classic")
        self.views.click(ABOUT, "Classic")
        self.wait_for_theme("Classic", "Meridane")
        self.assertTrue(program.is_running)

    def wait_for_theme_of_panel(self, theme):
        """As the tip of the button that switches it says when the pointer rests on it."""
        x, y = self.views.middle(self.views.wait_until_still(PANEL, "Switch theme"))
        self.session.xdotool("mousemove", x, y + 300, "mousemove", x, y)
        self.views.wait_for(PANEL, f"Theme: {theme} — click to switch", "tool tip")

    def test_the_theme_is_kept_for_the_next_start(self):
        program = self.launch_settled()
        self.wait_for_theme_of_panel("Classic")
        self.views.click(PANEL, "Switch theme")
        self.wait_for_theme_of_panel("Meridane")
        self.end(program)
        self.launch(program.home)
        self.wait_for_theme_of_panel("Meridane")

    def test_somebody_who_has_been_through_the_welcome_is_not_welcomed_again(self):
        home = self.settled()
        program = self.launch(home)
        self.views.wait_until_still(PANEL, "Switch theme")
        # It would come half a second after the panel, and no program rests that opens a window.
        program.wait_for_rest()
        self.assertEqual(self.session.window(WELCOME), "")
        self.end(program)

    def test_who_closes_the_welcome_by_its_cross_is_welcomed_again(self):
        home = self.new_home()
        program = self.launch(home)
        self.views.click(WELCOME, "Next")
        self.views.click(WELCOME, "Close")
        self.wait_until_gone(WELCOME)
        self.end(program)
        self.launch(home)
        self.views.wait_for(WELCOME, "Next")

    def test_quit_ends_the_program_with_success(self):
        program = self.launch_settled()
        self.views.click(PANEL, "Quit Orvanta")
        self.assertEqual(program.wait_for_end(), 0, program.words())

    def test_sigint_and_sighup_end_it_with_success_too(self):
        for number in (signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number):
                program = self.launch_settled()
                program.process.send_signal(number)
                self.assertEqual(program.wait_for_end(), 0, program.words())

    def test_it_rests_while_its_panel_is_minimized(self):
        program = self.launch_settled()
        self.views.click(PANEL, "About Orvanta")
        self.wait_until_gone(PANEL)
        program.wait_for_rest()

    def test_levels_are_followed_closely_only_while_somebody_can_see_them(self):
        program = self.launch_settled()
        self.views.click(PANEL, "Tap Forgotten Isles audio")
        self.wait_for_pace(program, "60Hz")
        self.views.click(PANEL, "Open Sound Command Center")
        self.wait_until_gone(PANEL)
        self.wait_for_pace(program, "60Hz")
        console = self.wait_for_window(CONSOLE)
        self.session.xdotool("windowminimize", console)
        self.wait_for_pace(program, "8Hz-bg")
        self.session.xdotool("windowmap", console)
        self.wait_for_pace(program, "60Hz")

    def test_without_a_session_bus_it_starts_and_shows_its_panel(self):
        program = self.launch(self.settled(),
                              environment={"DBUS_SESSION_BUS_ADDRESS": NO_BUS,
                                           "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": None})
        self.wait_for_window(PANEL)
        program.wait_for_rest()
        self.end(program)

    def test_without_a_display_it_says_so_and_ends(self):
        program = self.launch(self.new_home(), environment={"DISPLAY": None,
                                                            "QT_QPA_PLATFORM": None})
        self.assertEqual(program.wait_for_end(), 1)
        self.assertIn("there is no desktop to show anything on", program.words())
        self.programs.remove(program)

    def test_with_a_display_that_does_not_answer_it_says_so_and_ends(self):
        program = self.launch(self.new_home(), environment={"DISPLAY": ":12345",
                                                            "QT_FATAL_WARNINGS": None})
        self.assertEqual(program.wait_for_end(), 1)
        self.assertIn("the desktop does not answer", program.words())
        self.programs.remove(program)
        self.assertEqual(crash_reports(program), [])

    def test_a_killed_program_is_no_hindrance_to_the_next_start(self):
        program = self.launch_settled()
        program.process.kill()
        self.assertEqual(program.wait_for_end(), -signal.SIGKILL)
        self.programs.remove(program)
        self.launch(program.home)
        self.views.wait_for(PANEL, "Master volume", "slider")


class DyingDisplayTest(DesktopTest):
    def test_the_death_of_the_display_ends_it_without_a_crash(self):
        # The toolkit warns of it, as it must.
        program = self.launch_settled(environment={"QT_FATAL_WARNINGS": None})
        self.views.wait_until_still(PANEL, "Switch theme")
        self.programs.remove(program)
        self.session.display.kill()
        self.assertGreaterEqual(program.wait_for_end(), 0, program.words())
        self.assertEqual(crash_reports(program), [])
