"""What the panel lives through: players that quit in the middle of a gesture, an audio server that
dies, and a crowd."""

import sys

from support.audio_server import decibels
from support.desktop_test import PANEL, wait_until
from support.sound_desktop_test import OTHER, OUTPUT, PLAIN_DB, PLAYER, QUARTER_DB, \
    TOLERANCE_DB, VOLUME, PlayersDesktopTest, SoundDesktopTest


class QuittingPlayerTest(PlayersDesktopTest):
    def setUp(self):
        super().setUp()
        self.player = self.play()
        self.play(OTHER, "headphones")
        self.launch_settled()
        self.views.wait_for(PANEL, f"Tap {OTHER} audio")
        self.tap()

    def quit_player(self):
        self.audio.end(self.player)
        self.wait_until_unlisted(PLAYER)

    def assert_the_other_obeys_the_hand(self):
        self.tap(OTHER)
        self.views.wait_for_value(PANEL, f"{OTHER} volume", 1.0)
        self.views.drag_slider(PANEL, f"{OTHER} volume", 0.5)
        self.views.wait_for_value(PANEL, f"{OTHER} volume", 0.5)

    def test_the_hand_holds_the_volume_of_a_player_that_quits(self):
        self.session.xdotool("mousemove", *self.views.place_of(PANEL, VOLUME, 1.0), "mousedown", 1)
        under_way = self.views.place_of(PANEL, VOLUME, 0.6)
        self.session.xdotool("mousemove", *under_way)
        self.views.wait_for_value(PANEL, VOLUME, 0.6)
        self.quit_player()
        self.session.xdotool("mousemove_relative", 30, 0, "mouseup", 1)
        self.assert_the_other_obeys_the_hand()
        # It is in no hand when it comes back, and stands where it stands for a new player.
        self.play()
        self.tap()
        self.session.xdotool("mousemove", *self.views.place_of(PANEL, VOLUME, 0.3))
        self.views.wait_for_value(PANEL, VOLUME, 1.0)
        self.views.drag_slider(PANEL, VOLUME, 0.8)
        self.views.wait_for_value(PANEL, VOLUME, 0.8)

    def test_the_keyboard_goes_on_from_a_player_that_has_quit(self):
        self.session.click(*self.views.place_of(PANEL, VOLUME, 1.0))
        self.session.xdotool("key", "Left")
        self.views.wait_for_value(PANEL, VOLUME, 0.99)
        self.assertEqual(self.views.focused(PANEL).name, VOLUME)
        self.quit_player()
        # There is nobody whom these could be meant for.
        self.session.xdotool("key", "Left", "space", "Tab")
        wait_until("the keyboard is somewhere", lambda: self.views.focused(PANEL))
        self.views.wait_for_value(PANEL, "Master volume", 1.0)
        self.assert_the_other_obeys_the_hand()


class LostServerTest(SoundDesktopTest):
    def come_back(self):
        self.audio.start()
        self.speakers = self.record("speakers")
        self.player = self.play()
        self.wait_for_level(self.speakers, PLAIN_DB)

    def assert_a_tap_follows_the_hand(self):
        self.tap()
        self.views.drag_slider(PANEL, VOLUME, 0.25)
        self.views.wait_for_value(PANEL, VOLUME, 0.25)
        self.wait_for_level(self.speakers, PLAIN_DB + QUARTER_DB)

    def test_panel_and_recording_outlive_the_audio_server_with_a_menu_of_its_devices_open(self):
        self.tap()
        self.views.click(PANEL, f"Record {PLAYER} audio")
        self.views.wait_for(PANEL, "0:02")
        self.views.click(PANEL, OUTPUT)
        self.views.wait_for(PANEL, "Test Headphones", "menu item")
        self.audio.kill()
        self.views.wait_for(PANEL, "No audio apps detected")
        wait_until("the menu is gone", lambda: not self.views.find(PANEL, "Test Headphones"))
        self.views.click(PANEL, "Mute all")
        self.views.click(PANEL, "Unmute all")
        rate, samples = self.recorded()
        self.assertAlmostEqual(decibels(samples[rate // 2:rate]), PLAIN_DB, delta=TOLERANCE_DB)
        self.come_back()
        self.assert_a_tap_follows_the_hand()


class CrowdTest(PlayersDesktopTest):
    COUNT = 200
    LAST = f"Player {COUNT}"
    MOST_MEMORY_MIB = 40
    # One port of the server takes 128 links.
    DEVICES = ("speakers", "headphones")

    def setUp(self):
        super().setUp()
        self.audio.use_long_cycles()
        self.program = self.launch_settled()
        self.views.wait_for(PANEL, "0 apps")

    def play_all(self):
        """Each under a name of its own, such that they are in order."""
        players = [self.audio.play_as(f"Player {number:03d}", self.tone, self.DEVICES[number % 2])
                   for number in range(1, self.COUNT + 1)]
        for player in players:
            self.addCleanup(self.audio.end, player)
        wait_until("all are listed", lambda: self.views.find(PANEL, f"{self.COUNT} playing"))
        return players

    def wheel_to_the_end(self):
        x, y = self.views.middle(self.views.wait_for(PANEL, "Master volume", "slider"))
        self.session.xdotool("mousemove", x, y + 200, "click", "--repeat", 2 * self.COUNT,
                             "--delay", 5, 5)

    def test_two_hundred_programs_that_play_at_once_are_listed_and_the_last_obeys_the_hand(self):
        before = self.program.memory()
        players = self.play_all()
        self.wheel_to_the_end()
        self.tap(self.LAST)
        # It unfolds below the bottom.
        self.wheel_to_the_end()
        self.views.drag_slider(PANEL, f"{self.LAST} volume", 0.5)
        self.views.wait_for_value(PANEL, f"{self.LAST} volume", 0.5)
        grown = self.program.memory() - before
        print(f"The panel has grown by {grown:.0f} MiB, from {before:.0f}.", file=sys.stderr)
        self.assertLess(grown, self.MOST_MEMORY_MIB)
        self.assertTrue(all(player.poll() is None for player in players))
        for player in players:
            player.terminate()
        self.views.wait_for(PANEL, "No audio apps detected")
        self.program.wait_for_rest()
