#!/usr/bin/python3
"""Measures what the devices of the demonstration played against what the players were given.

usage: report.py RESULT_DIRECTORY LEAD DEVICE=SOUND=RIDE...
where RIDE is the volume asked for: "SECONDS:VOLUME SECONDS:VOLUME ...", and LEAD how many seconds
before the rides' beginning the first program was tapped.
"""

import sys
from pathlib import Path

import numpy as np

from picture import draw
from wav import read_wav

WINDOW = 0.05  # Seconds over which levels are taken
ROUTE_SLACK = 24000  # Frames by which a switch of routes may move a stream at most
PIECE = 0.25  # Seconds that are aligned as one
AUDIBLE = 1e-3
SILENCE = 1e-5


def decibels(linear):
    return 20 * np.log10(np.maximum(linear, SILENCE))


def text_of(linear):
    return "   -inf" if linear < SILENCE else f"{decibels(linear):7.2f}"


def rms(samples):
    return float(np.sqrt(np.mean(np.square(samples, dtype=np.float64))))


def lag_of(needle, haystack):
    """Where in the haystack the needle is: where the two are most alike, however loud each is."""
    size = 1 << int(np.ceil(np.log2(len(needle) + len(haystack))))
    spectrum = np.fft.rfft(haystack, size, axis=0) * np.conj(np.fft.rfft(needle, size, axis=0))
    places = len(haystack) - len(needle) + 1
    products = np.sum(np.fft.irfft(spectrum, size, axis=0)[:places], axis=1)
    powers = np.sum(np.square(haystack, dtype=np.float64), axis=1)
    energy = np.concatenate(([0.0], np.cumsum(powers)))
    energies = energy[len(needle) :] - energy[:places]
    likeness = products / np.sqrt(np.maximum(energies, 1e-3 * np.max(energies) + 1e-12))
    return int(np.argmax(likeness))


class Passage:
    """One device's recording beside what its player was given, on the recording's time."""

    def __init__(self, source, recorded, rate):
        self.rate = rate
        self.recorded = recorded
        lag = lag_of(source[: 2 * rate], recorded[: 10 * rate])
        self.source = np.zeros_like(recorded)
        length = min(len(source), len(recorded) - lag)
        self.source[lag : lag + length] = source[:length]
        self.start = lag / rate

    def levels(self, samples):
        width = int(WINDOW * self.rate)
        count = len(samples) // width
        blocks = samples[: count * width].reshape(count, -1).astype(np.float64)
        return np.sqrt(np.mean(np.square(blocks), axis=1))

    def compare(self, begin, end):
        """Piece by piece: how much of the source is in the recording, how far the rest lies below
        the source, and by how many frames the source has moved. The middle values, because a
        piece that holds a switch of routes or hardly a sound tells nothing."""
        pieces = [
            self.compare_piece(int(start * self.rate))
            for start in np.arange(begin, end - PIECE, PIECE)
        ]
        heard = [piece for piece in pieces if piece is not None]
        return np.median(heard, axis=0) if heard else (0.0, 0.0, 0.0)

    def compare_piece(self, first):
        last = first + int(PIECE * self.rate)
        recorded = self.recorded[first:last]
        before, after = max(0, first - ROUTE_SLACK), min(len(self.source), last + ROUTE_SLACK)
        around = self.source[before:after]
        if rms(recorded) < AUDIBLE or rms(around) < AUDIBLE:
            return None
        shift = lag_of(recorded, around)
        source = around[shift : shift + len(recorded)]
        gain = float(np.vdot(source, recorded) / np.vdot(source, source))
        return gain, rms(recorded - gain * source) / rms(source), before + shift - first


def volume_at(ride, seconds):
    times, volumes = zip(*ride)
    return np.interp(seconds, times, volumes)


def start_of_ride(passage, ride):
    """When the ride began: where it fits the measured gain best."""
    played = passage.levels(passage.source)
    gains = passage.levels(passage.recorded) / np.maximum(played, SILENCE)
    heard = played > 0.01
    times = (np.arange(len(gains)) + 0.5) * WINDOW

    def misfit(start):
        length = ride[-1][0]
        asked = np.where(
            (times >= start) & (times < start + length), volume_at(ride, times - start), 1.0
        )
        # The limiter decides how much of a gain above one is left.
        difference = np.minimum(gains, 1.0) - np.minimum(asked, 1.0)
        return np.sum(np.square(difference[heard]))

    candidates = np.arange(passage.start, passage.start + 12, 0.02)
    return float(candidates[np.argmin([misfit(start) for start in candidates])])


def holds(ride):
    """The times during which the volume asked for stays, without their edges."""
    for (begin, volume), (end, next_volume) in zip(ride, ride[1:]):
        if volume == next_volume and end - begin >= 0.5:
            yield begin + 0.2, end - 0.2, volume


def sections(passage, ride, ride_start, lead):
    yield "untapped", passage.start + 0.2, ride_start - lead - 0.3, 1.0
    for begin, end, volume in holds(ride):
        yield f"volume {volume * 100:.0f} %", ride_start + begin, ride_start + end, volume
    end = len(passage.recorded) / passage.rate
    yield "released", ride_start + ride[-1][0] + 0.7, end - 0.3, 1.0


def report(name, sound, passage, ride, ride_start, lead):
    print(f"\n{name}: {sound}, ridden from {ride_start - passage.start:.1f} s after its start")
    print(
        "  section        asked dB  measured dB  residual dB"
        "  moved frames  output RMS   peak dBFS"
    )
    rows = []
    for label, begin, end, volume in sections(passage, ride, ride_start, lead):
        gain, residual, moved = passage.compare(begin, end)
        output = passage.recorded[int(begin * passage.rate) : int(end * passage.rate)]
        print(
            f"  {label:<13} {text_of(volume):>9} {text_of(gain):>12} {text_of(residual):>12}"
            f" {moved:>13.0f} {text_of(rms(output)):>11} {text_of(np.max(np.abs(output))):>11}"
        )
        rows.append((label, begin, end, volume))
    return rows


def measure(directory, lead, name, sound, ride):
    rate, source = read_wav(directory / f"{sound}.wav")
    _, recorded = read_wav(directory / f"{name}.wav")
    # A sound of one channel is heard on both sides.
    passage = Passage(np.broadcast_to(source, (len(source), 2)), recorded, rate)
    ride_start = start_of_ride(passage, ride)
    rows = report(name, sound, passage, ride, ride_start, lead)
    return {
        "name": name,
        "sound": sound,
        "passage": passage,
        "ride_start": ride_start,
        "ride": ride,
        "sections": rows,
    }


def is_within(part, whole):
    """Whether the samples of one recording stand in the other, bit by bit."""
    wanted = part.astype("<f4").tobytes()
    return whole.astype("<f4").tobytes().find(wanted) >= 0


def check_recording(directory, device):
    """What a tap recorded of its processed side must be what its device played meanwhile."""
    for file in sorted(directory.glob("recordings/*_processed_*.wav")):
        rate, recorded = read_wav(file)
        _, played = read_wav(directory / f"{device}.wav")
        middle = recorded[rate:-rate]
        verdict = "is" if is_within(middle, played) else "IS NOT"
        print(f"\n{file.name}: its middle {len(middle) / rate:.1f} s {verdict} what {device} played")


def ride_of(text):
    return [tuple(float(number) for number in point.split(":")) for point in text.split()]


def main(arguments):
    directory = Path(arguments[0])
    lead = float(arguments[1])
    devices = []
    for argument in arguments[2:]:
        name, sound, ride = argument.split("=")
        devices.append(measure(directory, lead, name, sound, ride_of(ride)))
    print(
        "\nmeasured: the gain from what the program played to what its device played;"
        "\nresidual: what else the device played, below the program's level;"
        "\nmoved: how far the program's sound has jumped meanwhile, in frames (48000 a second)"
    )
    check_recording(directory, devices[0]["name"])
    draw(directory, devices)
    print(f"\nIn {directory}:")
    for file in sorted(directory.rglob("*.*")):
        print(f"  {file.relative_to(directory)}")


if __name__ == "__main__":
    main(sys.argv[1:])
