"""The program's intents, asked for over the session bus as a key of the desktop would."""

import subprocess

from gi.repository import GLib

PATH = "/com/meridane/orvanta"
INTERFACE = "com.meridane.orvanta.Intents"


class Intents:
    """Those of the program that has this name on the bus."""

    def __init__(self, name):
        self.name = name

    def gdbus(self, command, *arguments):
        return subprocess.run(["gdbus", command, "--session", "--dest", self.name, "--object-path",
                               PATH, *arguments],
                              capture_output=True, text=True, check=False, timeout=30)

    def answer(self, method, *arguments):
        """The one value of what it answers."""
        done = self.gdbus("call", "--method", f"{INTERFACE}.{method}", "--", *map(str, arguments))
        if done.returncode != 0:
            raise AssertionError(f"{method} is refused: {done.stderr}")
        return GLib.Variant.parse(None, done.stdout.strip(), None, None).unpack()[0]

    def is_there(self):
        return self.gdbus("call", "--method", "org.freedesktop.DBus.Peer.Ping").returncode == 0

    def refusal(self, method, *arguments):
        """The error's name and words. Arguments are written as dbus-send has them ("string:50")."""
        done = subprocess.run(["dbus-send", "--session", "--print-reply", f"--dest={self.name}",
                               PATH, f"{INTERFACE}.{method}", *arguments],
                              capture_output=True, text=True, check=False, timeout=30)
        if done.returncode == 0:
            raise AssertionError(f"{method} is answered: {done.stdout}")
        return done.stderr
