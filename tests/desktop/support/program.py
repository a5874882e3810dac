"""One start of the application under test, in a home of its own."""

import os
import signal
import subprocess
from pathlib import Path

from session import wait_until

SHARE_AT_REST = 0.25


def memory_of(pid):
    """In MiB, its share of what it has in common with others."""
    lines = Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines()
    return next(int(line.split()[1]) for line in lines if line.startswith("Pss:")) / 1024


class Program:
    """Runs in `session` until `quit`. `environment` says what is other than for us; None takes a
    variable away."""

    def __init__(self, session, executable, home, arguments=(), environment=None):
        home.mkdir(parents=True, exist_ok=True)
        self.home = home
        self.log = home / "program.log"
        variables = {
            **os.environ,
            "HOME": str(home),
            "XDG_CONFIG_HOME": str(home / "config"),
            "XDG_DATA_HOME": str(home / "data"),
            "XDG_STATE_HOME": str(home / "state"),
            "XDG_CACHE_HOME": str(home / "cache"),
            "QT_FATAL_WARNINGS": "1",
        }
        for name, value in (environment or {}).items():
            variables.pop(name, None)
            if value is not None:
                variables[name] = value
        self.process = session.run([executable, "--verbose", *arguments], log=self.log,
                                   env=variables)

    @property
    def is_running(self):
        return self.process.poll() is None

    def words(self):
        return self.log.read_text(errors="replace")

    def wait_for_end(self, patience=30):
        """The exit code; below zero where a signal has ended it."""
        try:
            return self.process.wait(patience)
        except subprocess.TimeoutExpired:
            raise AssertionError("in vain waited until the program ends\n" + self.words()) from None

    def quit(self):
        if self.is_running:
            self.process.send_signal(signal.SIGTERM)
        return self.wait_for_end()

    def memory(self):
        return memory_of(self.process.pid)

    def wait_for_rest(self):
        """Until it uses little of a processor. With a panel open its meters take their part."""
        wait_until("the program rests", lambda: self._share_in_a_second() < SHARE_AT_REST)

    def _share_in_a_second(self):
        before = self._processor_ticks()
        try:
            self.process.wait(1)
        except subprocess.TimeoutExpired:
            pass
        return (self._processor_ticks() - before) / os.sysconf("SC_CLK_TCK")

    def _processor_ticks(self):
        with open(f"/proc/{self.process.pid}/stat", encoding="ascii", errors="replace") as file:
            fields = file.read().rpartition(")")[2].split()
        user, system = 11, 12
        return int(fields[user]) + int(fields[system])
