"""A desktop of our own: a virtual display with a window manager, and what tells assistive tools of
its windows. Everything that is started here ends with it.

To be imported under a session bus of its own (dbus-run-session), with Debian's Python.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

PATIENCE = 30.0


def wait_until(what, condition, patience=PATIENCE):
    """What `condition` answers once that is true; gives up with a sentence."""
    end = time.monotonic() + patience
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError(f"in vain waited until {what}")
        time.sleep(0.05)


class Session:
    """Starts with the display; `run` starts programs in it."""

    def __init__(self, width=1280, height=800, tray=False):
        self.folder = Path(tempfile.mkdtemp(prefix="orvanta-desktop-"))
        self.processes = []
        runtime = self.folder / "runtime"
        runtime.mkdir(mode=0o700)
        for name, value in {
            "HOME": self.folder,
            "XDG_RUNTIME_DIR": runtime,
            "XDG_CONFIG_HOME": self.folder / "config",
            "XDG_DATA_HOME": self.folder / "data",
            "XDG_STATE_HOME": self.folder / "state",
            "XDG_CACHE_HOME": self.folder / "cache",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_QPA_PLATFORM": "xcb",
            "NO_AT_BRIDGE": "0",
        }.items():
            os.environ[name] = str(value)
        for name in ("WAYLAND_DISPLAY", "QT_SCALE_FACTOR"):
            os.environ.pop(name, None)
        self._start_display(width, height)
        self._start_window_manager()
        self.run(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
        if tray:
            self.start_tray()

    def start_tray(self):
        return self.run(["trayer", "--edge", "top", "--align", "right", "--height", "24",
                         "--widthtype", "request"])

    def _start_display(self, width, height):
        read, write = os.pipe()
        self.display = self.run(["Xvfb", "-displayfd", str(write), "-screen", "0",
                                 f"{width}x{height}x24", "-nolisten", "tcp", "-noreset"],
                                pass_fds=[write])
        os.close(write)
        with os.fdopen(read) as numbers:
            os.environ["DISPLAY"] = ":" + numbers.readline().strip()

    def _start_window_manager(self):
        self._write_window_manager_settings()
        ready = self.folder / "window-manager"
        self.run(["openbox", "--sm-disable", "--config-file", self._window_manager_settings(),
                  "--startup", f"touch {ready}"])
        wait_until("the window manager is there", ready.exists)

    def _window_manager_settings(self):
        return self.folder / "openbox.xml"

    def _write_window_manager_settings(self, *keys):
        bindings = "".join(f'<keybind key="{key}"><action name="Raise"/></keybind>' for key in keys)
        self._window_manager_settings().write_text(
            '<openbox_config xmlns="http://openbox.org/3.4/rc">'
            f"<focus><focusNew>yes</focusNew></focus><keyboard>{bindings}</keyboard>"
            "</openbox_config>\n")

    def let_window_manager_have(self, *keys):
        """These keys, as its settings write them, and no others."""
        self._write_window_manager_settings(*keys)
        subprocess.run(["openbox", "--reconfigure"], check=True)

    def run(self, command, log=None, **options):
        """Starts a program that dies with us."""
        with open(log or os.devnull, "wb") as output:
            process = subprocess.Popen(["setpriv", "--pdeathsig", "TERM", *map(str, command)],
                                       stdin=subprocess.DEVNULL, stdout=output,
                                       stderr=subprocess.STDOUT, **options)
        self.processes.append(process)
        return process

    def screenshot(self, path, window=None):
        """Of the whole display, or of the window with this title."""
        target = "root"
        if window:
            target = wait_until(f"there is a window {window}", lambda: self.window(window))
        subprocess.run(["import", "-window", target, str(path)], check=True)

    def windows(self, title):
        """The X windows with exactly this title that are on the screen."""
        return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{title}$"],
                              capture_output=True, text=True, check=False).stdout.split()

    def window(self, title):
        """One of them; empty where there is none."""
        found = self.windows(title)
        return found[-1] if found else ""

    def place(self, window):
        """Where the window itself begins on the display, without its frame."""
        return self._numbers(window, "Absolute upper-left X", "Absolute upper-left Y")

    def size(self, window):
        return self._numbers(window, "Width", "Height")

    @staticmethod
    def _numbers(window, *names):
        """Zeros for a window that has gone."""
        words = subprocess.run(["xwininfo", "-id", window], capture_output=True, text=True,
                               check=False).stdout
        found = (re.search(rf"{name}: +(-?\d+)", words) for name in names)
        return tuple(int(number[1]) if number else 0 for number in found)

    def xdotool(self, *words):
        subprocess.run(["xdotool", *map(str, words)], check=True)

    def click(self, x, y, button=1):
        self.xdotool("mousemove", x, y, "click", button)

    def drag(self, start, end, steps=12):
        self.xdotool("mousemove", *start, "mousedown", 1)
        for step in range(1, steps + 1):
            self.xdotool("mousemove",
                         round(start[0] + (end[0] - start[0]) * step / steps),
                         round(start[1] + (end[1] - start[1]) * step / steps))
            time.sleep(0.02)
        self.xdotool("mouseup", 1)

    def close(self):
        for process in reversed(self.processes):
            if process.poll() is None:
                process.terminate()
                try:
                    process.wait(10)
                except subprocess.TimeoutExpired:
                    process.kill()
                    process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)


def under_own_bus():
    """Runs this program anew under a session bus of its own, unless it is already."""
    if os.environ.get("ORVANTA_OWN_BUS") == "1":
        return
    os.environ["ORVANTA_OWN_BUS"] = "1"
    os.execvp("dbus-run-session", ["dbus-run-session", "--", sys.executable, *sys.argv])
