"""The mixer of the user's own session over an audio server with real players: what the hand does in
the panel is heard at the devices."""

import os

from support.audio_server import SILENCE_DB, AudioServer, decibels, write_tone
from support.desktop_test import PANEL, DesktopTest, wait_until

import wav

PLAYER = "pw-play"
OTHER = "paplay"
VOLUME = f"{PLAYER} volume"
OUTPUT = f"Output device for {PLAYER}"
# Of the tone as it is played, and what a quarter of it is below that.
PLAIN_DB = -12.04
QUARTER_DB = -12.04
TOLERANCE_DB = 0.5


class SoundDesktopTest(DesktopTest):
    executable = os.environ.get("ORVANTA_PROGRAM")

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.tone = cls.session.folder / "tone.wav"
        write_tone(cls.tone, 600)
        cls.audio = AudioServer(cls.session)

    def setUp(self):
        super().setUp()
        self.speakers = self.audio.record("speakers")
        self.headphones = self.audio.record("headphones")
        self.player = self.audio.play(PLAYER, self.tone, "speakers")
        self.wait_for_level(self.speakers, PLAIN_DB)
        self.launch_settled()
        self.views.wait_for(PANEL, f"Tap {PLAYER} audio")

    def tearDown(self):
        super().tearDown()
        for process in (self.player, self.speakers.process, self.headphones.process):
            self.audio.end(process)

    def tap(self):
        self.views.click(PANEL, f"Tap {PLAYER} audio")
        self.views.wait_for(PANEL, VOLUME, "slider")

    def wait_for_level(self, recording, decibel):
        wait_until(f"the device is at {decibel:.1f} dB",
                   lambda: abs(recording.level() - decibel) < TOLERANCE_DB)

    def wait_for_silence(self, recording):
        wait_until("the device is silent", lambda: recording.level() < SILENCE_DB)


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
        other = self.audio.play(OTHER, self.tone, "headphones")
        self.addCleanup(self.audio.end, other)
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
        files = list(self.programs[0].home.rglob("*.wav"))
        self.assertEqual(len(files), 1)
        rate, samples = wav.read_wav(files[0])
        self.assertGreater(len(samples), 2 * rate)
        self.assertAlmostEqual(decibels(samples[rate // 2:-rate // 4]), PLAIN_DB, delta=TOLERANCE_DB)


class ChangingSessionTest(SoundDesktopTest):
    def test_a_device_that_goes_while_its_menu_is_open_leaves_the_menu(self):
        self.audio.make_device("passing", "Passing Device")
        self.tap()
        self.views.click(PANEL, OUTPUT)
        self.views.wait_for(PANEL, "Passing Device", "menu item")
        self.audio.take_device("passing")
        wait_until("the entry is gone", lambda: not self.views.find(PANEL, "Passing Device"))
        self.views.click(PANEL, "Test Headphones")
        self.views.wait_for_description(PANEL, OUTPUT, "Test Headphones")
        self.wait_for_level(self.headphones, PLAIN_DB)

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
