"""What tests of the mixer over an audio server with real players have in common."""

import os

from session import wait_until

from support.audio_server import SILENCE_DB, AudioServer, write_tone
from support.desktop_test import PANEL, DesktopTest

import wav

PLAYER = "pw-play"
OTHER = "paplay"
VOLUME = f"{PLAYER} volume"
OUTPUT = f"Output device for {PLAYER}"
# Of the tone as it is played, and what a quarter of it is below that.
PLAIN_DB = -12.04
QUARTER_DB = -12.04
TOLERANCE_DB = 0.5


class PlayersDesktopTest(DesktopTest):
    """The mixer of the user's own session. What plays ends after the test."""

    executable = os.environ.get("ORVANTA_PROGRAM")

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.tone = cls.session.folder / "tone.wav"
        write_tone(cls.tone, 600)
        cls.audio = AudioServer(cls.session)

    def play(self, player=PLAYER, device="speakers"):
        process = self.audio.play(player, self.tone, device)
        self.addCleanup(self.audio.end, process)
        return process

    def tap(self, player=PLAYER):
        self.views.click(PANEL, f"Tap {player} audio")
        self.views.wait_for(PANEL, f"{player} volume", "slider")

    def wait_until_unlisted(self, player):
        wait_until(f"{player} is not in the panel any more",
                   lambda: self.views.find(PANEL, player) is None)


class SoundDesktopTest(PlayersDesktopTest):
    """A player is heard at the speakers and the program has been started."""

    def setUp(self):
        super().setUp()
        self.speakers = self.record("speakers")
        self.headphones = self.record("headphones")
        self.player = self.play()
        self.wait_for_level(self.speakers, PLAIN_DB)
        self.launch_settled()
        self.views.wait_for(PANEL, f"Tap {PLAYER} audio")

    def record(self, device):
        recording = self.audio.record(device)
        self.addCleanup(self.audio.end, recording.process)
        return recording

    def wait_for_level(self, recording, decibel):
        wait_until(f"the device is at {decibel:.1f} dB",
                   lambda: abs(recording.level() - decibel) < TOLERANCE_DB)

    def wait_for_silence(self, recording):
        wait_until("the device is silent", lambda: recording.level() < SILENCE_DB)

    def recorded(self):
        """Rate and samples of the one recording that there is."""
        files = list(self.programs[0].home.rglob("*.wav"))
        self.assertEqual(len(files), 1)
        return wav.read_wav(files[0])
