"""The mail of what a crash has left."""

import shutil
import signal
from urllib.parse import parse_qs, urlsplit

from support.desktop_test import ABOUT, PANEL, DesktopTest, wait_until
from support.opener import Opener

REPORT = "crash-2026-11-21T12-34-56Z.log"
# What an address gives a meaning of its own, and what is no ASCII.
WORDS = "Reason: die Wand & 100 % of #1 = größer?\nStack: one\n"
BUTTON = "Send Crash Report"


class CrashReportTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.home = self.settled()
        self.opener = Opener(self.home / "desktop")
        self.crashes = next(self.home.rglob("crashes"))

    def start(self):
        program = self.launch(self.home, environment=self.opener.environment)
        self.views.click(PANEL, "About Orvanta")
        return program

    def left(self):
        return [file.name for file in self.crashes.glob("crash-*.log")]

    def sent(self):
        return [file.name for file in (self.crashes / "sent").glob("crash-*.log")]

    def test_the_about_window_mails_what_a_crash_has_left_and_offers_it_no_more(self):
        (self.crashes / REPORT).write_text(WORDS)
        self.start()
        self.views.click(ABOUT, BUTTON)
        address = urlsplit(self.opener.wait_for_address())
        self.assertEqual((address.scheme, address.path), ("mailto", "support@orvanta.meridane.com"))
        mail = parse_qs(address.query, strict_parsing=True)
        self.assertRegex(mail["subject"][0], r"^Orvanta Crash Report — v\d")
        # The other is the one that every run begins for signals.
        self.assertIn("Reports: 2\n", mail["body"][0])
        self.assertIn(f"--- {REPORT} ---\n{WORDS}", mail["body"][0])
        wait_until("there is no button", lambda: not self.views.find(ABOUT, BUTTON))
        self.assertEqual(self.left(), [])
        self.assertIn(REPORT, self.sent())
        self.assertEqual((self.crashes / "sent" / REPORT).read_text(), WORDS)
        self.assertEqual(len(self.opener.asked()), 1)

    def test_where_nothing_can_be_kept_there_is_no_mail_to_send(self):
        shutil.rmtree(self.crashes)
        self.crashes.touch()
        self.start()
        self.views.wait_until_still(ABOUT, "Meridane")
        self.assertIsNone(self.views.find(ABOUT, BUTTON))

    def test_the_mail_tells_of_the_signal_that_ended_the_run_before(self):
        program = self.start()
        program.process.send_signal(signal.SIGSEGV)
        self.assertEqual(program.wait_for_end(), -signal.SIGSEGV)
        self.programs.remove(program)
        self.start()
        self.views.click(ABOUT, BUTTON)
        mail = parse_qs(urlsplit(self.opener.wait_for_address()).query)
        self.assertIn(f"CRASH:SIG:{signal.SIGSEGV.value}", mail["body"][0])
