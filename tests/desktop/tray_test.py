"""The icon in the tray and the panel that drops from it."""

from support.desktop_test import PANEL, DesktopTest, wait_until


class TrayDesktopTest(DesktopTest):
    def launch_hidden(self):
        program = self.launch(self.settled())
        self.wait_for_icon()
        return program

    def wait_for_icon(self):
        wait_until("the tray has the icon", self.icon)

    def icon(self):
        """The tray's window once it is as wide as an icon: it holds nothing else."""
        tray = self.session.window("panel")
        return tray if tray and self.session.size(tray)[0] > 10 else None

    def panel(self):
        return self.session.window(PANEL)

    def click_icon(self):
        x, y = self.session.place(self.icon())
        self.session.click(x + 12, y + 12)

    def open_panel(self):
        self.click_icon()
        wait_until("the panel shows", self.panel)
        wait_until("the panel has the keyboard", lambda: self.views.is_active(PANEL))


class TrayTest(TrayDesktopTest):
    has_tray = True

    def test_nothing_but_the_icon_shows_at_the_start(self):
        program = self.launch_hidden()
        program.wait_for_rest()
        self.assertEqual(self.panel(), "")

    def test_a_click_on_the_icon_drops_the_panel_beside_it(self):
        self.launch_hidden()
        self.open_panel()
        icon_x, icon_y = self.session.place(self.icon())
        x, y = self.session.place(self.panel())
        width, _ = self.session.size(self.panel())
        _, icon_height = self.session.size(self.icon())
        self.assertLess(y - icon_y - icon_height, 20)
        self.assertGreaterEqual(y, icon_y + icon_height)
        self.assertLess(abs(x + width - icon_x), 60)

    def test_a_click_on_the_icon_of_an_open_panel_hides_it_for_good(self):
        program = self.launch_hidden()
        self.open_panel()
        self.click_icon()
        wait_until("the panel is hidden", lambda: not self.panel())
        program.wait_for_rest()
        self.assertEqual(self.panel(), "")
        self.open_panel()

    def test_a_click_elsewhere_hides_the_panel(self):
        self.session.run(["xev"])
        window = self.wait_for_window("Event Tester")
        self.launch_hidden()
        self.open_panel()
        x, y = self.session.place(window)
        self.session.click(x + 10, y + 100)
        wait_until("the panel is hidden", lambda: not self.panel())

    def test_escape_hides_the_panel(self):
        self.launch_hidden()
        self.open_panel()
        self.session.xdotool("key", "Escape")
        wait_until("the panel is hidden", lambda: not self.panel())

    def test_a_second_start_drops_the_panel(self):
        program = self.launch_hidden()
        second = self.launch(program.home)
        self.assertEqual(second.wait_for_end(), 0)
        wait_until("the panel shows", self.panel)


class LateTrayTest(TrayDesktopTest):
    def test_a_tray_that_comes_later_gets_the_icon_and_one_that_goes_leaves_the_panel(self):
        self.launch_settled()
        tray = self.session.start_tray()
        self.wait_for_icon()
        self.views.wait_until_still(PANEL, "Switch theme")
        tray.terminate()
        tray.wait()
        wait_until("the icon is gone", lambda: not self.icon())
        wait_until("the panel shows", self.panel)
        self.session.start_tray()
        self.wait_for_icon()
