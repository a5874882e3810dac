"""The mixer of the user's own session over an audio server with real players: what the hand does in
the panel is heard at the devices."""

from support.audio_server import decibels
from support.desktop_test import PANEL, wait_until
from support.sound_desktop_test import OTHER, OUTPUT, PLAIN_DB, PLAYER, QUARTER_DB, TOLERANCE_DB, \
    VOLUME, SoundDesktopTest


class SoundTest(SoundDesktopTest):
    def test_the_device_follows_the_hand_on_the_slider(self):
        self.tap()
        self.wait_for_level(self.speakers, PLAIN_DB)
        self.views.drag_slider(PANEL, VOLUME, 0.25)
        self.views.wait_for_value(PANEL, VOLUME, 0.25)
        self.wait_for_level(self.speakers, PLAIN_DB + QUARTER_DB)
        self.views.click(PANEL, f"Remove tap from {PLAYER}")
        self.wait_for_level(self.speakers, PLAIN_DB)

    def test_what_is_not_tapped_stays_as_loud_as_it_plays(self):
        self.play(OTHER, "headphones")
        self.views.wait_for(PANEL, f"Tap {OTHER} audio")
        self.wait_for_level(self.headphones, PLAIN_DB)
        before = self.headphones.level()
        self.tap()
        self.views.drag_slider(PANEL, VOLUME, 0.25)
        self.wait_for_level(self.speakers, PLAIN_DB + QUARTER_DB)
        self.assertAlmostEqual(self.headphones.level(), before, delta=0.05)

    def test_mute_all_silences_what_is_tapped(self):
        self.tap()
        self.views.click(PANEL, "Mute all")
        self.wait_for_silence(self.speakers)
        self.views.click(PANEL, "Unmute all")
        self.wait_for_level(self.speakers, PLAIN_DB)

    def test_the_menu_sends_a_program_to_another_device(self):
        self.tap()
        self.views.click(PANEL, OUTPUT)
        self.views.click(PANEL, "Test Headphones")
        self.views.wait_for_description(PANEL, OUTPUT, "Test Headphones")
        self.wait_for_silence(self.speakers)
        self.wait_for_level(self.headphones, PLAIN_DB)
        self.views.click(PANEL, OUTPUT)
        self.views.click(PANEL, "System Default")
        self.wait_for_level(self.speakers, PLAIN_DB)
        self.wait_for_silence(self.headphones)

    def test_a_recording_of_a_program_is_in_the_music_folder(self):
        self.tap()
        self.views.click(PANEL, f"Record {PLAYER} audio")
        self.views.wait_for(PANEL, "0:02")
        self.views.click(PANEL, f"Stop recording {PLAYER}")
        wait_until("it is over", lambda: self.views.find(PANEL, "REC") is None)
        rate, samples = self.recorded()
        self.assertGreater(len(samples), 2 * rate)
        self.assertAlmostEqual(decibels(samples[rate // 2:-rate // 4]), PLAIN_DB, delta=TOLERANCE_DB)


class ChangingSessionTest(SoundDesktopTest):
    def test_a_device_in_use_that_goes_while_its_menu_is_open_leaves_menu_and_program(self):
        self.audio.make_device("passing", "Passing Device")
        passing = self.record("passing")
        self.tap()
        self.views.click(PANEL, OUTPUT)
        self.views.click(PANEL, "Passing Device")
        self.wait_for_level(passing, PLAIN_DB)
        self.wait_for_silence(self.speakers)
        self.views.click(PANEL, OUTPUT)
        self.views.wait_for(PANEL, "Passing Device", "menu item")
        self.audio.take_device("passing")
        wait_until("the entry is gone", lambda: not self.views.find(PANEL, "Passing Device"))
        self.wait_for_level(self.speakers, PLAIN_DB)
        self.views.click(PANEL, "Test Headphones")
        self.views.wait_for_description(PANEL, OUTPUT, "Test Headphones")
        self.wait_for_level(self.headphones, PLAIN_DB)
        self.wait_for_silence(self.speakers)

    def test_launch_at_login_is_an_entry_of_the_session_and_is_seen_at_the_next_start(self):
        program = self.programs[0]
        entries = program.home / "config" / "autostart"
        self.views.click(PANEL, "Launch at login")
        wait_until("there is an entry", lambda: list(entries.glob("*.desktop")))
        self.assertIn(self.executable, next(entries.glob("*.desktop")).read_text())
        self.end(program)
        self.launch(program.home)
        wait_until("it is shown as set", lambda: self.views.is_checked(
            self.views.wait_for(PANEL, "Launch at login")))
        self.views.click(PANEL, "Launch at login")
        wait_until("the entry is gone", lambda: not list(entries.glob("*.desktop")))
