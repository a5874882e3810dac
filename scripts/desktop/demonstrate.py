#!/usr/bin/python3
"""Shows the application at work on a display of its own: taps a program in the panel, records it,
drags its slider, opens its equaliser, looks at the other windows. Leaves pictures and the recording,
and fails where the recording does not show what the hand did.

usage: demonstrate.py DEMO_PROGRAM RESULT_FOLDER
"""

import shutil
import sys
import time
from pathlib import Path

import numpy

sys.path.insert(0, str(Path(__file__).resolve().parent))
sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "demo"))
import session as desktop

PROGRAM = "Vinyl"
PANEL = "Orvanta"
QUIET = 0.25
SECONDS = 5.0
# After its start, when the program that is recorded has begun to play.
MUSIC_BEGINS = 14.0
# The music is not equally loud all the time: what the change of 12 dB is measured within.
TOLERANCE_DB = 4.0


def level(samples):
    return 20 * numpy.log10(max(float(numpy.sqrt(numpy.mean(samples ** 2))), 1e-9))


def check_recording(file, before, after):
    """Both are spans of the recording, in seconds."""
    import wav
    rate, samples = wav.read_wav(file)
    loud, quiet = (samples[int(begin * rate):int(end * rate)] for begin, end in (before, after))
    change = level(quiet) - level(loud)
    asked = 20 * numpy.log10(QUIET)
    print(f"The recording: {len(samples) / rate:.1f} s, {level(loud):.1f} dBFS before the hand and "
          f"{level(quiet):.1f} after it: {change:+.1f} dB, asked {asked:+.1f}.")
    if abs(change - asked) > TOLERANCE_DB:
        raise AssertionError("the recording does not show the change of volume")


def go_through_welcome(views, results):
    title = "Welcome to Orvanta"
    for page in range(3):
        views.wait_for(title, "Get Started" if page == 2 else "Next")
        time.sleep(0.4)
        views.session.screenshot(results / f"welcome-{page + 1}.png", title)
        views.click(title, "Get Started" if page == 2 else "Next")
    desktop.wait_until("the welcome is over", lambda: not views.session.window(title))


def demonstrate(program, results):
    from views import Views

    session = desktop.Session()
    try:
        session.run([program, "--panel", "--verbose"], log=results / "orvanta-demo.log")
        started = time.monotonic()
        views = Views(session)
        views.window(PANEL)
        go_through_welcome(views, results)
        session.run([program]).wait(20)
        views.wait_for(PANEL, f"Tap {PROGRAM} audio")
        session.screenshot(results / "panel.png", PANEL)

        time.sleep(max(0.0, started + MUSIC_BEGINS - time.monotonic()))
        views.click(PANEL, f"Tap {PROGRAM} audio")
        views.click(PANEL, f"Record {PROGRAM} audio")
        views.wait_for(PANEL, "REC")
        begin = time.monotonic()
        time.sleep(SECONDS)
        session.screenshot(results / "panel-recording.png", PANEL)
        first = time.monotonic() - begin
        views.drag_slider(PANEL, f"{PROGRAM} volume", QUIET)
        slider = views.wait_for(PANEL, f"{PROGRAM} volume", "slider")
        print(f"The slider stands at {views.value(slider):.2f}.")
        second = time.monotonic() - begin
        time.sleep(SECONDS)
        third = time.monotonic() - begin
        views.click(PANEL, f"Stop recording {PROGRAM}")
        desktop.wait_until("the recording is over", lambda: views.find(PANEL, "REC") is None)
        views.click(PANEL, f"Equalizer for {PROGRAM}")
        views.wait_for(PANEL, "Treble", "slider")
        session.screenshot(results / "panel-equalizer.png", PANEL)
        views.click(PANEL, "Switch theme")
        time.sleep(0.5)
        session.screenshot(results / "panel-meridane.png", PANEL)
        views.click(PANEL, "About Orvanta")
        views.wait_for("About Orvanta", "Send Crash Report")
        time.sleep(0.5)
        session.screenshot(results / "about.png", "About Orvanta")

        recordings = sorted((session.folder / "data").rglob("*.wav"))
        if not recordings:
            raise AssertionError("there is no recording")
        shutil.copy(recordings[0], results / "recording.wav")
        check_recording(results / "recording.wav", (0.3, first), (second + 0.3, third - 0.3))
    finally:
        session.close()


def main():
    if len(sys.argv) != 3:
        raise SystemExit(__doc__.strip().splitlines()[-1])
    results = Path(sys.argv[2]).resolve()
    results.mkdir(parents=True, exist_ok=True)
    demonstrate(Path(sys.argv[1]).resolve(), results)
    print(f"Pictures and the recording are in {results}.")


if __name__ == "__main__":
    desktop.under_own_bus()
    main()
