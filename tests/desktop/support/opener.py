"""What stands in for the desktop's own ways to open an address."""

import os

from session import wait_until


class Opener:
    """Opens nothing, and tells what it was asked to open. First in `environment`'s PATH."""

    def __init__(self, folder):
        self._asked = folder / "asked"
        programs = folder / "bin"
        programs.mkdir(parents=True)
        for name in ("xdg-open", "xdg-email"):
            program = programs / name
            program.write_text(f'#!/bin/sh\nprintf "%s\\n" "$@" >>"{self._asked}"\n')
            program.chmod(0o755)
        self.environment = {"PATH": f"{programs}:{os.environ['PATH']}"}

    def asked(self):
        """All addresses so far."""
        return self._asked.read_text().splitlines() if self._asked.exists() else []

    def wait_for_address(self):
        """The first."""
        return wait_until("the desktop is asked to open something", self.asked)[0]
