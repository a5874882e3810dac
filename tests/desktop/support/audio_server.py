"""An audio server of the test's own, with session manager and Pulse bridge, players and devices."""

import os
import signal
import subprocess
import wave

import numpy

from session import wait_until

RATE = 48000
TONE_HZ = 440.0
SILENCE_DB = -90.0
# What is listened to at a time.
SPAN_SECONDS = 0.3

HEADLESS_MAIN = """alsa_monitor.enabled = false
v4l2_monitor.enabled = false
libcamera_monitor.enabled = false
default_access.properties["enable-flatpak-portal"] = false
"""
HEADLESS_BLUETOOTH = "bluez_monitor.enabled = false\n"


def write_tone(path, seconds, amplitude=0.25):
    turns = 2 * numpy.pi * TONE_HZ * numpy.arange(seconds * RATE) / RATE
    samples = numpy.round(32767 * amplitude * numpy.sin(turns)).astype("<i2")
    with wave.open(str(path), "wb") as file:
        file.setnchannels(2)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(numpy.repeat(samples, 2).tobytes())


def decibels(samples):
    """0 is a sine that uses all there is."""
    if samples.size == 0:
        return -numpy.inf
    mean = float(numpy.mean(numpy.square(samples, dtype=numpy.float64)))
    return 10 * numpy.log10(max(2 * mean, 1e-20))


class Recording:
    """What a device plays, for as long as it is there."""

    def __init__(self, process, file):
        self.process = process
        self.file = file

    def level(self):
        """Of the last of it, in dB."""
        with open(self.file, "rb") as file:
            begin = file.read(4096)
            header = begin.find(b"data") + 8
            file.seek(0, os.SEEK_END)
            frames = (file.tell() - header) // 8
            wanted = int(SPAN_SECONDS * RATE)
            if b"data" not in begin or frames < wanted:
                return -numpy.inf
            file.seek(header + (frames - wanted) * 8)
            return decibels(numpy.frombuffer(file.read(wanted * 8), "<f4"))


class AudioServer:
    """Starts with two devices, "speakers" (the default) and "headphones"."""

    def __init__(self, session):
        self.session = session
        self.folder = session.folder / "audio"
        runtime = self.folder / "runtime"
        runtime.mkdir(parents=True, mode=0o700)
        for name, value in {
            "PIPEWIRE_RUNTIME_DIR": runtime,
            "PULSE_RUNTIME_PATH": runtime / "pulse",
            "PULSE_SERVER": f"unix:{runtime}/pulse/native",
        }.items():
            os.environ[name] = str(value)
        for name in ("PIPEWIRE_REMOTE", "PIPEWIRE_LATENCY", "PULSE_SINK"):
            os.environ.pop(name, None)
        # It hears of no bus and no hardware.
        self.environment = {**os.environ,
                            "XDG_RUNTIME_DIR": str(runtime),
                            "XDG_CONFIG_HOME": str(self.folder / "config"),
                            "XDG_STATE_HOME": str(self.folder / "state"),
                            "DBUS_SESSION_BUS_ADDRESS": "disabled:",
                            "DBUS_SYSTEM_BUS_ADDRESS": "disabled:"}
        for name, words in (("main", HEADLESS_MAIN), ("bluetooth", HEADLESS_BLUETOOTH)):
            folder = self.folder / "config/wireplumber" / f"{name}.lua.d"
            folder.mkdir(parents=True)
            (folder / "51-headless.lua").write_text(words)
        (self.folder / "state").mkdir()
        self.daemons = []
        self.start()

    def start(self):
        self._start_daemon("pipewire")
        wait_until("the audio server answers", lambda: self._ask("pw-cli", "info", "0"))
        self._start_daemon("wireplumber")
        wait_until("the session manager is ready",
                   lambda: "default" in self._ask("pw-metadata", "0"))
        self._start_daemon("pipewire-pulse")
        wait_until("the Pulse bridge answers", lambda: self._ask("pactl", "info"))
        self.make_device("speakers", "Test Speakers")
        self.make_device("headphones", "Test Headphones")
        self._ask("pw-metadata", "0", "default.configured.audio.sink", '{"name":"speakers"}',
                  "Spa:String:JSON")
        wait_until("the speakers are the default", lambda: '"speakers"' in
                   self._ask("pw-metadata", "0", "default.audio.sink"))

    def kill(self):
        """All three daemons at once and without a farewell; `start` brings them back."""
        for daemon in self.daemons:
            daemon.kill()
        for daemon in self.daemons:
            daemon.wait()
        self.daemons.clear()

    def _start_daemon(self, name):
        self.daemons.append(self.session.run([name], log=self.folder / f"{name}.log",
                                             env=self.environment))

    def _ask(self, *command):
        """What the tool says; nothing where it fails."""
        try:
            done = subprocess.run(command, capture_output=True, text=True, check=False, timeout=10,
                                  env=self.environment)
        except subprocess.TimeoutExpired:
            return ""
        return done.stdout if done.returncode == 0 else ""

    def make_device(self, name, description):
        self._ask("pw-cli", "create-node", "adapter",
                  "{ factory.name=support.null-audio-sink media.class=Audio/Sink "
                  f'node.name={name} node.description="{description}" '
                  "audio.rate=48000 audio.position=\"FL,FR\" priority.session=1000 "
                  "priority.driver=1000 monitor.channel-volumes=true object.linger=true }")
        wait_until(f"the device {name} is there",
                   lambda: f"{name}:playback_FR" in self._ask("pw-link", "-i"))

    def take_device(self, name):
        self._ask("pw-cli", "destroy", name)
        wait_until(f"the device {name} is gone",
                   lambda: f"{name}:playback_FR" not in self._ask("pw-link", "-i"))

    def play(self, player, file, device):
        """By `player`, a program of that name."""
        command = {"pw-play": ["pw-play", "--target", device, file],
                   "paplay": ["paplay", f"--device={device}", file]}[player]
        return self.session.run(command, log=self.folder / f"{player}.log")

    def play_as(self, name, file, device):
        """By a program that calls itself by that name."""
        return self.session.run(["pw-cat", "--playback", "--target", device, "--properties",
                                 f'{{ application.name="{name}" }}', file])

    def use_long_cycles(self):
        """So that many players cost little."""
        self._ask("pw-metadata", "-n", "settings", "0", "clock.force-quantum", "8192")

    def record(self, device):
        file = self.folder / f"{device}-{len(self.session.processes)}.wav"
        process = self.session.run(
            ["pw-record", "--target", device, "--properties",
             "{ stream.capture.sink=true node.dont-reconnect=true }",
             "--rate", RATE, "--channels", "2", "--format", "f32", file],
            log=self.folder / f"{device}-record.log")
        wait_until(f"the recording of {device} has begun",
                   lambda: file.exists() and file.stat().st_size > 0)
        return Recording(process, file)

    @staticmethod
    def end(process, number=signal.SIGTERM):
        if process.poll() is None:
            process.send_signal(number)
            process.wait(20)
