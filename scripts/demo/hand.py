#!/usr/bin/python3
"""Moves faders as a hand does: writes the commands of rides to standard output at their times.

usage: hand.py APPLICATION=RIDE...
where RIDE is "SECONDS:VOLUME SECONDS:VOLUME ..." from now on, in straight lines from point to point.
"""

import sys
import time

STEP = 0.02  # Seconds


def ride_of(text):
    return [tuple(float(number) for number in point.split(":")) for point in text.split()]


def volume_at(ride, seconds):
    """Of points at one time the last counts from then on."""
    for (begin, volume), (end, next_volume) in zip(ride, ride[1:]):
        if begin <= seconds < end:
            return volume + (next_volume - volume) * (seconds - begin) / (end - begin)
    return ride[-1][1]


def main(arguments):
    rides = [argument.split("=") for argument in arguments]
    rides = [(name, ride_of(text)) for name, text in rides]
    end = max(ride[-1][0] for _, ride in rides)
    said = {}
    start = time.monotonic()
    now = 0.0
    while now < end:
        for name, ride in rides:
            command = f"volume {name} {volume_at(ride, now):.4f}"
            if said.get(name) != command:
                print(command, flush=True)
            said[name] = command
        time.sleep(STEP)
        now = time.monotonic() - start


if __name__ == "__main__":
    main(sys.argv[1:])
