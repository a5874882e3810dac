"""The window that tells of a newer version, and what its buttons do."""

import os

from support.desktop_test import PANEL, DesktopTest, wait_until
from support.opener import Opener
from support.update_server import Signer, UpdateServer

UPDATES = "Software Update"
OFFER = "Orvanta 2.0 is available. You have 1."
FILE = "/orvanta-2.tar.gz"
CONTENT = b"the next version" * 1000


class UpdateTest(DesktopTest):
    executable = os.environ.get("ORVANTA_UPDATING_DEMO")

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        folder = cls.session.folder / "updates"
        folder.mkdir()
        cls.signer = Signer(folder, "makers")
        cls.stranger = Signer(folder, "stranger")
        cls.server = UpdateServer(folder)
        cls.addClassCleanup(cls.server.close)

    def launch_with_news(self, signer):
        """The program, whose feed has a version that this one has signed."""
        self.server.announce(self.server.item(2, FILE, CONTENT, signer.sign(CONTENT)))
        home = self.settled()
        self.opener = Opener(home / "desktop")
        program = self.launch(home, environment={
            **self.opener.environment,
            "ORVANTA_TEST_CERTIFICATE": str(self.server.certificate),
            "ORVANTA_TEST_FEED_URL": self.server.url("/feed.xml"),
            "ORVANTA_TEST_FEED_KEY": self.signer.public_key()})
        self.wait_for_window(PANEL)
        self.views.wait_for(UPDATES, OFFER)
        self.turn_to_updates()
        return program

    def turn_to_updates(self):
        self.session.xdotool("windowactivate", "--sync", self.wait_for_window(UPDATES))
        wait_until("the window has the keyboard", lambda: self.views.is_active(UPDATES))

    def press_by_key(self, name):
        """Goes there by Tab, wherever the keyboard is."""
        self.views.wait_for(UPDATES, name)
        for _ in range(len(self.views.all(UPDATES))):
            before = self.views.focused(UPDATES)
            if before is not None and before.name == name:
                break
            self.session.xdotool("key", "Tab")
            wait_until("the keyboard has gone on",
                       lambda: self.views.focused(UPDATES) not in (None, before))
        self.assertEqual(self.views.focused(UPDATES).name, name)
        self.session.xdotool("key", "space")

    def downloads(self):
        return [file for folder in self.programs[0].home.rglob("Downloads")
                for file in folder.iterdir()]

    def test_keys_reach_every_button_and_fetch_the_file(self):
        self.launch_with_news(self.signer)
        self.press_by_key("Release Notes")
        self.assertEqual(self.opener.wait_for_address(), self.server.url("/notes.html"))
        self.press_by_key("Download")
        self.views.wait_for(UPDATES, "Orvanta 2.0 is downloaded, and it was signed by its makers.")
        self.assertEqual([file.read_bytes() for file in self.downloads()], [CONTENT])
        self.press_by_key("Show File")
        wait_until("the folder is opened", lambda: len(self.opener.asked()) == 2)
        self.assertEqual(self.opener.asked()[1], self.downloads()[0].parent.as_uri())
        self.press_by_key("Close")
        self.wait_until_gone(UPDATES)

    def test_a_file_that_somebody_else_has_signed_is_thrown_away(self):
        self.launch_with_news(self.stranger)
        self.views.click(UPDATES, "Download")
        self.views.wait_for(UPDATES, "Orvanta 2.0 could not be downloaded: The file was not signed "
                                     "by its makers, so it was thrown away.")
        self.assertEqual(self.downloads(), [])

    def test_the_button_of_the_panel_looks_again_and_escape_closes_what_it_says(self):
        self.launch_with_news(self.signer)
        self.session.xdotool("key", "Escape")
        self.wait_until_gone(UPDATES)
        self.server.announce()
        self.views.click(PANEL, "Check for updates")
        self.views.wait_for(UPDATES, "Orvanta 1 is the newest version.")
        self.turn_to_updates()
        self.session.xdotool("key", "Escape")
        self.wait_until_gone(UPDATES)
