"""What a key of the desktop or a script can do with the mixer: its intents on the session bus, and
the command that asks for them."""

import math
import os
import subprocess

from gi.repository import Gio, GLib

from support.desktop_test import PANEL, DesktopTest, wait_until
from support.intents import Intents
from support.sound_desktop_test import OTHER, PLAIN_DB, PLAYER, SoundDesktopTest

DEMO = "com.meridane.orvanta.demo"
MIXER = "com.meridane.orvanta"
FIRST, SECOND = "Vinyl", "Forgotten Isles"
NOTHING_PLAYS = "No audio apps are currently playing."
MOST, LEAST = 2**63 - 1, -2**63
INVALID = "org.freedesktop.DBus.Error.InvalidArgs"
UNKNOWN = "org.freedesktop.DBus.Error.UnknownMethod"
# What the command says where nobody can be asked.
NOBODY = "AudioMixerCLI: Orvanta does not run in this session.\n"
NO_BUS = "AudioMixerCLI: there is no session bus to find Orvanta on.\n"


def run_intent(*arguments, environment=None):
    """What becomes of the command."""
    return subprocess.run([os.environ["ORVANTA_CLI"], "intent", *map(str, arguments)],
                          capture_output=True, text=True, check=False, timeout=30,
                          env={**os.environ, **(environment or {})})


class AutomationTest(DesktopTest):
    def assert_missed(self, done, sentence):
        self.assertEqual((done.returncode, done.stdout, done.stderr), (1, "", sentence))


class DemoTest(AutomationTest):
    """The demonstration, under the name of its own."""

    def setUp(self):
        super().setUp()
        self.intents = Intents(DEMO)

    def tap(self, name):
        """Whether its row is in sight or not; done once it is told of."""
        self.views.press(PANEL, f"Tap {name} audio")
        wait_until(f"{name} is tapped", lambda: name in self.intents.answer("ListAudioApps"))

    def master(self):
        """As the panel tells it: "50 percent"."""
        return self.views.wait_for(PANEL, "Master volume").description

    def wait_for_master(self, words):
        self.views.wait_for_description(PANEL, "Master volume", words)


class IntentsTest(DemoTest):
    def setUp(self):
        super().setUp()
        self.program = self.launch_settled()
        self.views.wait_until_still(PANEL, "Switch theme")

    def test_every_volume_is_answered_as_given_and_set_within_its_limits(self):
        for given, percent in ((50, 50), (0, 0), (200, 200), (201, 200), (-5, 0), (300, 200),
                               (LEAST, 0), (MOST, 200), (1, 1), (99, 99)):
            with self.subTest(given=given):
                self.assertEqual(self.intents.answer("SetVolume", given),
                                 f"Volume set to {given}%")
                self.wait_for_master(f"{percent} percent")

    def test_a_volume_without_a_number_is_the_full_one(self):
        self.intents.answer("SetVolume", 20)
        self.wait_for_master("20 percent")
        self.assertEqual(self.intents.answer("SetVolume"), "Volume set to 100%")
        self.wait_for_master("100 percent")

    def test_mute_is_toggled_together_with_the_panel(self):
        before = self.master()
        self.assertEqual(self.intents.answer("ToggleMute"), "All audio muted")
        self.views.wait_for(PANEL, "Unmute all")
        self.wait_for_master("0 percent")
        self.views.click(PANEL, "Unmute all")
        self.views.wait_for(PANEL, "Mute all")
        self.assertEqual(self.intents.answer("ToggleMute"), "All audio muted")
        self.assertEqual(self.intents.answer("ToggleMute"), "Audio unmuted")
        self.views.wait_for(PANEL, "Mute all")
        self.wait_for_master(before)

    def test_tapped_applications_are_named_in_one_line(self):
        self.assertEqual(self.intents.answer("ListAudioApps"), NOTHING_PLAYS)
        self.tap(SECOND)
        self.assertEqual(self.intents.answer("ListAudioApps"), f"Playing: {SECOND}")
        self.tap(FIRST)
        self.assertEqual(self.intents.answer("ListAudioApps"), f"Playing: {FIRST}, {SECOND}")

    def test_what_is_wrong_is_refused_and_changes_nothing(self):
        before = self.master()
        for arguments in (["string:50"], ["double:50"], ["int32:50"], ["boolean:true"],
                          ["int64:50", "int64:60"], ["array:int64:50"]):
            with self.subTest(arguments=arguments):
                self.assertIn(INVALID, self.intents.refusal("SetVolume", *arguments))
        self.assertIn(INVALID, self.intents.refusal("ToggleMute", "boolean:true"))
        self.assertIn(UNKNOWN, self.intents.refusal("Quit"))
        self.views.wait_for(PANEL, "Mute all")
        self.assertEqual(self.master(), before)
        self.assertTrue(self.program.is_running)

    def test_the_bus_tells_what_there_is(self):
        told = self.intents.gdbus("introspect").stdout
        words = " ".join(told.split())
        for method in ("SetVolume(in x volume, out s dialog)", "ToggleMute(out s dialog)",
                       "ListAudioApps(out s dialog)", "ListShortcuts(out aa{sv} shortcuts)"):
            self.assertIn(method, words)

    def test_the_shortcuts_are_offered_with_their_phrases(self):
        shortcuts = self.intents.answer("ListShortcuts")
        self.assertEqual([shortcut["method"] for shortcut in shortcuts],
                         ["SetVolume", "ToggleMute", "ListAudioApps"])
        self.assertEqual(shortcuts[0]["phrases"],
                         ["Set Orvanta volume to {volume}", "Change Orvanta volume"])
        self.assertEqual(shortcuts[0]["argument"]["default"], 100)
        self.assertNotIn("argument", shortcuts[1])

    def test_a_closed_panel_leaves_the_intents_their_mixer(self):
        self.session.xdotool("key", "Escape")
        self.wait_until_gone(PANEL)
        self.assertEqual(self.intents.answer("ToggleMute"), "All audio muted")

    def test_the_command_asks_the_mixer_and_not_the_demonstration(self):
        self.assert_missed(run_intent("toggle-mute"), NOBODY)
        self.assertEqual(self.intents.answer("ToggleMute"), "All audio muted")


class EarlyIntentsTest(DemoTest):
    """A tray has the icon, so no panel shows by itself."""

    has_tray = True

    def launch_hidden(self, home):
        program = self.launch(home)
        wait_until("the intents are there", self.intents.is_there)
        return program

    def show_panel(self, program):
        self.assertEqual(self.launch(program.home).wait_for_end(), 0)
        self.views.wait_until_still(PANEL, "Switch theme")

    def home_with_tap(self):
        """And what the volume of everything was when it was left."""
        program = self.launch(self.settled(), "--panel")
        self.tap(FIRST)
        volume = self.master()
        self.end(program)
        return program.home, volume

    def test_before_the_panel_they_answer_and_change_nothing(self):
        home, volume = self.home_with_tap()
        program = self.launch_hidden(home)
        self.assertEqual(self.intents.answer("SetVolume", 30), "Volume set to 30%")
        self.assertEqual(self.intents.answer("ToggleMute"), "Audio unmuted")
        self.assertEqual(self.intents.answer("ListAudioApps"), NOTHING_PLAYS)
        self.assertEqual(self.session.window(PANEL), "")
        self.show_panel(program)
        self.views.wait_for(PANEL, "Mute all")
        self.assertEqual(self.master(), volume)
        self.assertEqual(self.intents.answer("ListAudioApps"), f"Playing: {FIRST}")
        self.assertEqual(self.intents.answer("SetVolume", 30), "Volume set to 30%")
        self.wait_for_master("30 percent")

    def test_a_name_that_another_program_has_is_waited_for(self):
        bus = Gio.bus_get_sync(Gio.BusType.SESSION)

        def ask_for_name(method, *arguments):
            bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                          method, GLib.Variant(*arguments), None, Gio.DBusCallFlags.NONE, -1, None)
        ask_for_name("RequestName", "(su)", (DEMO, 0))
        program = self.launch(self.settled(), "--panel")
        self.wait_for_window(PANEL)
        self.assertIn(f"No automation until process {os.getpid()} gives the name {DEMO} back",
                      program.words())
        ask_for_name("ReleaseName", "(s)", (DEMO,))
        self.assertEqual(self.intents.answer("ToggleMute"), "All audio muted")
        self.views.wait_for(PANEL, "Unmute all")


class IntentCommandTest(SoundDesktopTest, AutomationTest):
    """The mixer of the session over real players, asked by the command."""

    def intent(self, *arguments):
        """The one line that it prints."""
        done = run_intent(*arguments)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(done.stdout.count("\n"), 1)
        return done.stdout.rstrip("\n")

    def test_the_volume_is_heard_at_the_device(self):
        self.assertEqual(self.intent("set-volume", 50), "Volume set to 50%")
        # Half of the way of a volume control, which is a cube.
        self.wait_for_level(self.speakers, PLAIN_DB + 60 * math.log10(0.5))
        self.assertEqual(self.intent("set-volume"), "Volume set to 100%")
        self.wait_for_level(self.speakers, PLAIN_DB)
        self.assertEqual(self.intent("set-volume", -5), "Volume set to -5%")
        self.wait_for_silence(self.speakers)
        self.assertEqual(self.intent("set-volume", 100), "Volume set to 100%")
        self.wait_for_level(self.speakers, PLAIN_DB)

    def test_the_mute_is_heard_at_the_device(self):
        self.assertEqual(self.intent("toggle-mute"), "All audio muted")
        self.wait_for_silence(self.speakers)
        self.views.wait_for(PANEL, "Unmute all")
        self.assertEqual(self.intent("toggle-mute"), "Audio unmuted")
        self.wait_for_level(self.speakers, PLAIN_DB)

    def test_tapped_players_are_named_by_process(self):
        self.assertEqual(self.intent("list-apps"), NOTHING_PLAYS)
        self.tap()
        self.assertEqual(self.intent("list-apps"), f"Playing: {PLAYER}")
        other = self.play(OTHER, "headphones")
        self.tap(OTHER)
        names = {self.player.pid: PLAYER, other.pid: OTHER}
        self.assertEqual(self.intent("list-apps"),
                         "Playing: " + ", ".join(names[pid] for pid in sorted(names)))

    def test_the_command_and_the_bus_ask_the_same(self):
        self.assertEqual(self.intent("toggle-mute"), "All audio muted")
        self.assertEqual(Intents(MIXER).answer("ToggleMute"), "Audio unmuted")

    def test_the_shortcuts_are_printed(self):
        done = run_intent("shortcuts")
        self.assertEqual(done.stdout.splitlines(), [
            "SetVolume: Set Volume (speaker.wave.2.fill)",
            '  "Set Orvanta volume to {volume}"',
            '  "Change Orvanta volume"',
            "  {volume}: Volume level as percentage (0-200), 100 if not said",
            "ToggleMute: Toggle Mute (speaker.slash.fill)",
            '  "Mute Orvanta"',
            '  "Unmute Orvanta"',
            '  "Toggle Orvanta mute"',
            "ListAudioApps: List Audio Apps (music.note.list)",
            '  "List Orvanta audio apps"',
            '  "Show Orvanta playing apps"',
        ])

    def test_a_mixer_that_has_ended_is_missed_in_one_sentence(self):
        self.end(self.programs[0])
        self.assert_missed(run_intent("set-volume", 50), NOBODY)

    def test_a_bus_that_is_not_there_is_missed_in_one_sentence(self):
        self.assert_missed(run_intent("set-volume", 50, environment={
            "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent/bus"}), NO_BUS)
