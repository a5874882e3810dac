"""Reads WAV files of 32-bit float samples, which the standard library does not."""

import struct

import numpy as np

FLOAT_FORMATS = (3, 0xFFFE)


def read_wav(path):
    """The rate in Hz and the samples, one row per frame."""
    data = path.read_bytes()
    if data[:4] != b"RIFF" or data[8:12] != b"WAVE":
        raise ValueError(f"{path} is no WAV file")
    chunks = {}
    offset = 12
    while offset + 8 <= len(data):
        name, size = data[offset : offset + 4], struct.unpack_from("<I", data, offset + 4)[0]
        chunks.setdefault(name, data[offset + 8 : offset + 8 + size])
        offset += 8 + size + size % 2
    kind, channels, rate = struct.unpack_from("<HHI", chunks[b"fmt "])
    bits = struct.unpack_from("<H", chunks[b"fmt "], 14)[0]
    if kind not in FLOAT_FORMATS or bits != 32:
        raise ValueError(f"{path} holds no 32-bit float samples")
    samples = np.frombuffer(chunks[b"data"], dtype="<f4")
    return rate, samples[: len(samples) // channels * channels].reshape(-1, channels)
