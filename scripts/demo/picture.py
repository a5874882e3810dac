"""Draws the demonstration: levels in and out over time, and the spectrum at two volumes."""

import subprocess
import tempfile
from pathlib import Path

import numpy as np

WINDOW = 0.05
FLOOR_DB = -60
COLORS = ("#4cc2ff", "#ffb454")
SPECTRUM_SIZE = 8192


def played_down_to(floor):
    return f"with filledcurves y1={floor} fc rgb '#5b6577' fs transparent solid 0.55"


STYLE = """
set terminal pngcairo size 1600,1180 enhanced font 'DejaVu Sans,13' background rgb '#12151c'
set border 3 lc rgb '#39404f' lw 1
set tics textcolor rgb '#9aa4b5' nomirror out scale 0.5
set xlabel textcolor rgb '#9aa4b5'
set ylabel textcolor rgb '#9aa4b5'
set title textcolor rgb '#eef1f6' font 'DejaVu Sans,16' offset graph 0,0.02
set grid lc rgb '#232936' lw 1
set key textcolor rgb '#c9d0dc' at graph 1,1.1 right horizontal samplen 2 noautotitle
"""


def decibels(linear):
    return 20 * np.log10(np.maximum(linear, 1e-4))


def write_table(path, *columns):
    np.savetxt(path, np.column_stack(columns), fmt="%.5f")


def write_levels(path, device):
    passage = device["passage"]
    played = decibels(passage.levels(passage.source))
    recorded = decibels(passage.levels(passage.recorded))
    times = (np.arange(len(played)) + 0.5) * WINDOW - passage.start
    write_table(path, times, played, recorded)


def write_ride(path, device):
    begin = device["ride_start"] - device["passage"].start
    points = [(begin + seconds, volume * 100) for seconds, volume in device["ride"]]
    points = [(0, 100), (begin, 100), *points, (points[-1][0], 100), (points[-1][0] + 3, 100)]
    write_table(path, *zip(*points))


def spectrum(samples):
    """Power in dB, averaged over overlapping blocks and smoothed to a twelfth of an octave."""
    window = np.hanning(SPECTRUM_SIZE)[:, None]
    starts = range(0, len(samples) - SPECTRUM_SIZE, SPECTRUM_SIZE // 2)
    powers = [
        np.abs(np.fft.rfft(samples[start : start + SPECTRUM_SIZE] * window, axis=0)) ** 2
        for start in starts
    ]
    power = np.mean(powers, axis=(0, 2)) / np.sum(window) ** 2 * 2
    frequencies = np.fft.rfftfreq(SPECTRUM_SIZE)
    bands = 20.0 * 2 ** (np.arange(0, 10, 1 / 12))
    return bands, frequencies, power


def write_spectrum(path, passage, begin, end):
    first, last = int(begin * passage.rate), int(end * passage.rate)
    columns = []
    for samples in (passage.source, passage.recorded):
        bands, frequencies, power = spectrum(samples[first:last].astype(np.float64))
        hertz = frequencies * passage.rate
        smooth = [
            np.mean(power[(hertz >= low / 2 ** (1 / 12)) & (hertz <= low * 2 ** (1 / 12))])
            if np.any((hertz >= low / 2 ** (1 / 12)) & (hertz <= low * 2 ** (1 / 12)))
            else np.interp(low, hertz, power)
            for low in bands
        ]
        columns.append(10 * np.log10(np.maximum(smooth, 1e-12)))
    write_table(path, bands, *columns)


def level_plot(device, color, files):
    name, sound = device["name"], device["sound"]
    begin = device["ride_start"] - device["passage"].start
    end = begin + device["ride"][-1][0]
    return f"""
unset object
set object 1 rect from {begin},graph 0 to {end},graph 1 fc rgb '#1a2030' fs solid noborder behind
set label 1 'mixed' at {begin + 0.15},graph 0.93 textcolor rgb '#6f7a8f' font 'DejaVu Sans,12'
set title '{name.capitalize()}: {sound} before and after the tap'
set xrange [0:{end + 3}]
set yrange [{FLOOR_DB}:0]
set y2range [0:240]
set y2tics 0,50,200 textcolor rgb '#9aa4b5'
set ytics 10
set xlabel 'seconds'
set ylabel 'RMS level, dBFS'
set y2label 'volume asked, %' textcolor rgb '#9aa4b5'
plot '{files}.levels' using 1:2 {played_down_to(FLOOR_DB)} \\
        title 'played by the program', \\
     '' using 1:3 with filledcurves y1={FLOOR_DB} fc rgb '{color}' fs transparent solid 0.30, \\
     '' using 1:3 with lines lc rgb '{color}' lw 2 title 'heard on the device', \\
     '{files}.ride' using 1:2 axes x1y2 with lines lc rgb '#f2f4f8' lw 1.5 dt (8,5) \\
        title 'volume asked'
unset y2tics
unset y2label
unset label 1
unset object 1
"""


def spectrum_plot(path, title, color):
    return f"""
set title '{title}'
set logscale x
set xrange [30:18000]
set yrange [-100:-10]
set ytics 20
set xtics ('50' 50, '100' 100, '200' 200, '500' 500, '1k' 1000, '2k' 2000, '5k' 5000, '10k' 10000)
set xlabel 'Hz'
set ylabel 'dB'
plot '{path}' using 1:2 {played_down_to(-100)} title 'played', \\
     '' using 1:3 with lines lc rgb '{color}' lw 2 title 'heard'
unset logscale x
set xtics auto
"""


def panel(left, bottom, width, height):
    return f"set origin {left},{bottom}\nset size {width},{height}\n"


def draw(directory, devices):
    with tempfile.TemporaryDirectory() as scratch:
        script = STYLE + f"set output '{directory / 'picture.png'}'\nset multiplot\n"
        for row, (device, color) in enumerate(zip(devices, COLORS)):
            files = str(Path(scratch) / device["name"])
            write_levels(files + ".levels", device)
            write_ride(files + ".ride", device)
            script += panel(0, 0.68 - row * 0.34, 1, 0.32) + level_plot(device, color, files)
        first = devices[0]
        held = [section for section in first["sections"] if section[3] != 1.0][:2]
        for column, (label, begin, end, _) in enumerate(held):
            path = str(Path(scratch) / f"{column}.spectrum")
            write_spectrum(path, first["passage"], begin, end)
            title = f"{first['sound'].capitalize()} at {label}: its spectrum"
            script += panel(column * 0.5, 0.0, 0.5, 0.32)
            script += spectrum_plot(path, title, COLORS[0])
        subprocess.run(["gnuplot"], input=script, text=True, check=True)
