#!/usr/bin/python3
"""Measures the application on a display of its own, over the demonstration's programs: how long it
takes to show its panel, what it costs while the panel is open with all programs tapped, while it is
closed, and how much memory it has. Figures are of the machine that it runs on.

usage: measure.py DEMO_PROGRAM
"""

import os
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import session as desktop

PANEL = "Orvanta"
SECONDS = 10.0
STARTS = 5


def processor_seconds(pid):
    fields = Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def share_of_a_core(pid):
    before, start = processor_seconds(pid), time.monotonic()
    time.sleep(SECONDS)
    return 100 * (processor_seconds(pid) - before) / (time.monotonic() - start)


def memory(pid):
    for line in Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
        if line.startswith("Pss:"):
            return int(line.split()[1]) / 1024
    return 0.0


def time_to_panel(session, program):
    start = time.monotonic()
    process = session.run([program, "--panel"])
    while not session.window(PANEL):
        time.sleep(0.005)
    shown = time.monotonic() - start
    process.terminate()
    process.wait()
    return shown


def measure(program):
    from views import Views

    session = desktop.Session()
    try:
        times = sorted(time_to_panel(session, program) for _ in range(STARTS))
        print(f"start to the panel's window on the screen: median {times[STARTS // 2] * 1000:.0f} ms, "
              f"best {times[0] * 1000:.0f} ms")
        process = session.run([program, "--panel"])
        views = Views(session)
        views.window("Welcome to Orvanta")
        views.click("Welcome to Orvanta", "Close")
        pid = process.pid
        print(f"memory (PSS): {memory(pid):.0f} MB")
        print(f"panel open, nothing tapped: {share_of_a_core(pid):.1f} % of a core")
        views.click(PANEL, "Auto-tap")
        views.wait_for(PANEL, "Remove tap from Podium")
        print(f"panel open, playing programs tapped: {share_of_a_core(pid):.1f} %")
        session.xdotool("windowminimize", session.window(PANEL))
        time.sleep(1)
        print(f"panel minimised, programs tapped: {share_of_a_core(pid):.1f} %")
        print(f"memory (PSS): {memory(pid):.0f} MB")
    finally:
        session.close()


if __name__ == "__main__":
    desktop.under_own_bus()
    if len(sys.argv) != 2:
        raise SystemExit(__doc__.strip().splitlines()[-1])
    measure(Path(sys.argv[1]).resolve())
