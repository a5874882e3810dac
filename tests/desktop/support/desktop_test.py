"""What tests of the application in real windows have in common."""

import os
import shutil
import sys
import unittest

from session import Session, wait_until

from support.program import Program

PANEL = "Orvanta"
ABOUT = "About Orvanta"
WELCOME = "Welcome to Orvanta"
CONSOLE = "Sound Command Center"


class DesktopTest(unittest.TestCase):
    """One display for all tests of a class; each has a home of its own and starts the program
    itself. However a test ends, its programs have to end by SIGTERM, at once and with success."""

    executable = os.environ.get("ORVANTA_DEMO")
    has_tray = False

    @classmethod
    def setUpClass(cls):
        cls.session = Session(tray=cls.has_tray)
        cls.addClassCleanup(cls.session.close)
        # Only now it is known where assistive tools meet.
        from views import Views
        cls.views = Views(cls.session)
        cls.settled_home = None
        cls.homes = 0

    def setUp(self):
        self.programs = []

    def tearDown(self):
        for program in self.programs:
            self.assertEqual(program.quit(), 0, program.words())

    def new_home(self):
        """Of somebody who has never seen the program."""
        type(self).homes += 1
        return self.session.folder / f"home-{self.homes}"

    def settled(self):
        """A home of somebody who has been through the welcome."""
        if self.settled_home is None:
            home = self.new_home()
            program = self.launch(home, "--panel")
            self.go_through_welcome()
            self.end(program)
            type(self).settled_home = home
        home = self.new_home()
        shutil.copytree(self.settled_home, home)
        return home

    def launch(self, home, *arguments, environment=None):
        program = Program(self.session, self.executable, home, arguments, environment)
        self.programs.append(program)
        self.addCleanup(self.tell_of, program)
        return program

    def tell_of(self, program):
        """The last words of the program, for who reads why a test has failed."""
        print(f"\n-- {self.id()}\n{program.words()[-3000:]}", file=sys.stderr)

    def launch_settled(self, *arguments, environment=None):
        program = self.launch(self.settled(), *arguments, environment=environment)
        self.wait_for_window(PANEL)
        return program

    def end(self, program):
        self.assertEqual(program.quit(), 0, program.words())
        self.programs.remove(program)

    def wait_for_window(self, title):
        return wait_until(f"there is a window {title}", lambda: self.session.window(title))

    def wait_until_gone(self, title):
        wait_until(f"the window {title} is gone", lambda: not self.session.window(title))

    def go_through_welcome(self):
        for _ in range(2):
            self.views.click(WELCOME, "Next")
        self.views.click(WELCOME, "Get Started")
        self.wait_until_gone(WELCOME)
