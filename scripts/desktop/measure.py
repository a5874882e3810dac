#!/usr/bin/python3
"""Measures the application on a display of its own: how long the demonstration takes to show its
panel, what the mixer of the session costs over a private audio server with sixteen players, its panel
open and closed, tapped and not, and how much memory it has. Figures are of the machine that it runs on.

usage: measure.py DEMO_PROGRAM PROGRAM
"""

import os
import sys
import time
import wave
from pathlib import Path

import numpy

here = Path(__file__).resolve()
sys.path[:0] = [str(here.parent), str(here.parents[2] / "tests/desktop")]
import session as desktop
from support.audio_server import RATE, AudioServer
from support.program import memory_of

PANEL = "Orvanta"
SECONDS = 10.0
STARTS = 5
PLAYERS = 16
TONE_SECONDS = 120


def processor_seconds(pid):
    fields = Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def share_of_a_core(pid):
    before, start = processor_seconds(pid), time.monotonic()
    time.sleep(SECONDS)
    return 100 * (processor_seconds(pid) - before) / (time.monotonic() - start)


def time_to_panel(session, program):
    start = time.monotonic()
    process = session.run([program, "--panel"])
    while not session.window(PANEL):
        time.sleep(0.005)
    shown = time.monotonic() - start
    process.terminate()
    process.wait()
    return shown


def write_moving_tone(path):
    """A tone that swells and ebbs three times a second: its meter is never at rest."""
    times = numpy.arange(TONE_SECONDS * RATE) / RATE
    tone = (0.35 + 0.3 * numpy.sin(6 * numpy.pi * times)) * numpy.sin(880 * numpy.pi * times)
    with wave.open(str(path), "wb") as file:
        file.setnchannels(2)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(numpy.repeat((32767 * tone).astype("<i2"), 2).tobytes())


def open_panel(session, program):
    """The program with nothing but its panel open."""
    from views import Views

    process = session.run([program, "--panel"])
    views = Views(session)
    views.click("Welcome to Orvanta", "Close")
    return process, views


def measure_starts(session, program):
    times = sorted(time_to_panel(session, program) for _ in range(STARTS))
    print(f"start to the panel's window on the screen: median {times[STARTS // 2] * 1000:.0f} ms, "
          f"best {times[0] * 1000:.0f} ms")


def measure_players(session, program):
    tone = session.folder / "tone.wav"
    write_moving_tone(tone)
    audio = AudioServer(session)
    for number in range(PLAYERS):
        audio.play_as(f"Player {number + 1}", tone, "speakers")
    process, views = open_panel(session, program)

    def tell(what):
        print(f"{what}: {share_of_a_core(process.pid):.1f} % of a core, {memory_of(process.pid):.0f} MB")

    views.wait_for(PANEL, f"{PLAYERS} playing")
    tell("panel open, sixteen play, nothing tapped")
    views.click(PANEL, "Auto-tap")
    views.wait_for(PANEL, f"{PLAYERS} tapped")
    tell("panel open, all tapped")
    session.xdotool("windowminimize", session.window(PANEL))
    desktop.wait_until("the panel is closed", lambda: not session.window(PANEL))
    tell("panel closed, all tapped")


def measure(demo, program):
    session = desktop.Session()
    try:
        measure_starts(session, demo)
        measure_players(session, program)
    finally:
        session.close()


if __name__ == "__main__":
    desktop.under_own_bus()
    if len(sys.argv) != 3:
        raise SystemExit(__doc__.strip().splitlines()[-1])
    measure(*(Path(program).resolve() for program in sys.argv[1:]))
