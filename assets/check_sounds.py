#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Holds the shipped sound effects and music against what play asks of them.

Prints each criterion with the value measured and its bounds; exits with 1 if any fails.  Needs
python3-numpy, python3-scipy and ffmpeg.
"""

import json
import subprocess
import sys
from itertools import chain
from math import inf
from pathlib import Path

import numpy as np
from scipy import signal
from scipy.io import wavfile

import loudness
from criteria import judge

ROOT = Path(__file__).resolve().parents[1]
RATE = loudness.RATE

# Effect: (loudest 400 ms in LUFS, longest length in seconds).
SHORT_S, SET_S, LONG_S = 0.6, 1.4, 3.0
COMBOS = [f"combo{n}" for n in range(2, 8)]
EFFECTS = {
    "select": (-24, SHORT_S),
    "gemdrop": (-24, SHORT_S),
    "badswap": (-21, SHORT_S),
    "timerbeep": (-21, SHORT_S),
    "gotset": (-19, SET_S),
    "gotsetbig": (-18, SET_S),
    **{name: (-17, SET_S) for name in COMBOS},
    "explode": (-17, LONG_S),
    "excellent": (-15, LONG_S),
    "gameover": (-15, LONG_S),
    "gameoverlevel": (-15, LONG_S),
}
LOUDNESS_SLACK = 2
LAST_SAMPLES = RATE // 100

# Tonal peaks: how far below the strongest one still counts, how narrow it must
# be, and where it is looked for.
TONE_HZ = (190.0, 5000.0)
TONE_DEPTH_DB, TONE_NARROW_DB, TONE_NARROW_CENTS = 20.0, 9.0, 100
D_MAJOR = (2, 4, 6, 7, 9, 11, 1)
COMBO_RUN_S = 0.25  # the run of notes that leads to a combo's last one


def to_db(value):
    return 20 * np.log10(max(float(value), 1e-9))


def find_tones(samples):
    """Return (frequencies, levels) of the narrow peaks of the spectrum."""
    mono = samples.mean(axis=1)
    size = 1 << 19
    level = 20 * np.log10(np.abs(np.fft.rfft(mono * np.hanning(len(mono)), size)) + 1e-9)
    step = RATE / size
    low, high = (int(edge / step) for edge in TONE_HZ)
    floor = level[low:high].max() - TONE_DEPTH_DB
    peaks, _ = signal.find_peaks(level[:high], height=floor, prominence=TONE_NARROW_DB)
    aside = 2 ** (TONE_NARROW_CENTS / 1200)
    narrow = [
        p
        for p in peaks
        if p >= low
        and level[p] - TONE_NARROW_DB > max(level[round(p / aside)], level[round(p * aside)])
    ]
    return np.array(narrow) * step, level[narrow]


def stray_from_key(frequency):
    """Return how many cents a frequency lies off the nearest note of D major."""
    pitch = 69 + 12 * np.log2(frequency / 440)
    return min(abs(pitch - note) for note in range(20, 120) if note % 12 in D_MAJOR) * 100


def measure_spectrum(samples):
    """Return (centroid in Hz, per cent of the energy above 8 kHz)."""
    power = np.sum(np.abs(np.fft.rfft(samples, axis=0)) ** 2, axis=1)
    frequency = np.fft.rfftfreq(len(samples), 1 / RATE)
    return (frequency * power).sum() / power.sum(), 100 * power[
        frequency > 8000
    ].sum() / power.sum()


def find_top_note(samples):
    """Return the strongest tone after the run, in Hz: the note a combo arrives at."""
    tones, levels = find_tones(samples[round(COMBO_RUN_S * RATE) :])
    return tones[np.argmax(levels)]


def effect_path(name):
    return ROOT / "sounds" / f"{name}.wav"


def read_effect(name):
    """Return (format, samples) of a wave file, full scale 1.0."""
    rate, raw = wavfile.read(effect_path(name))
    return f"{raw.dtype} {rate}", raw.reshape(len(raw), -1) / 32768


def check_effect(name):
    form, samples = read_effect(name)
    yield f"{name}: format", form, "int16 44100"
    target, longest = EFFECTS[name]
    yield f"{name}: length, s", len(samples) / RATE, 0, longest
    yield f"{name}: first and last sample", np.abs(samples[[0, -1]]).max(), 0, 0.001
    yield f"{name}: last 10 ms, dBFS", to_db(np.abs(samples[-LAST_SAMPLES:]).max()), -inf, -60
    yield f"{name}: peak, dBFS", to_db(np.abs(samples).max()), -12, -1
    yield f"{name}: direct current", np.abs(samples.mean(axis=0)).max(), 0, 0.001
    loudest = loudness.measure_momentary(effect_path(name))
    bounds = target - LOUDNESS_SLACK, target + LOUDNESS_SLACK
    yield f"{name}: loudest 400 ms, LUFS", loudest, *bounds
    yield f"{name}: per cent of energy above 8 kHz", measure_spectrum(samples)[1], 0, 2
    tones, _ = find_tones(samples)
    stray = max((stray_from_key(tone) for tone in tones), default=inf)
    yield f"{name}: farthest of {len(tones)} tones off the key, cents", stray, 0, 30


def check_combos():
    combos = [read_effect(name)[1] for name in COMBOS]
    for what, measure in (("centroid", lambda s: measure_spectrum(s)[0]), ("note", find_top_note)):
        rises = np.diff([measure(samples) for samples in combos])
        yield f"combos: least rise of the {what} to the next one, Hz", rises.min(), 1, inf


def probe(path):
    """Return what the head of a sound file tells: its duration in seconds, and its tags."""
    command = [
        "ffprobe",
        "-v",
        "error",
        "-of",
        "json",
        "-show_entries",
        "format=duration:format_tags",
    ]
    done = subprocess.run([*command, path], capture_output=True, check=True)
    return json.loads(done.stdout)["format"]


def read_music(path):
    """Return the samples of a piece as it is heard."""
    command = ["ffmpeg", "-v", "error", "-i", path, "-f", "f32le", "-ac", "2", "-ar", str(RATE)]
    done = subprocess.run([*command, "-"], capture_output=True, check=True)
    return np.frombuffer(done.stdout, "<f4").reshape(-1, 2).astype(float)


def check_piece(path):
    name, told, samples = path.stem, probe(path), read_music(path)
    yield f"{name}: title", told["tags"]["title"], name.replace("-", " ").title()
    seconds = len(samples) / RATE
    yield f"{name}: length, s", seconds, 90, inf
    # The head counts whole frames, of which the ends of the first and the last are not heard.
    yield f"{name}: length in its head beyond that, s", float(told["duration"]) - seconds, 0, 0.08
    yield f"{name}: first and last sample", np.abs(samples[[0, -1]]).max(), 0, 0.001
    heard = loudness.measure(path)
    yield f"{name}: loudness, LUFS", heard["loudness"], -19.7, -19.2
    yield f"{name}: loudness range, LU", heard["range"], 3, 10
    yield f"{name}: true peak, dBFS", heard["true peak"], -inf, -1
    # Wide enough, and whole on one loudspeaker.
    side = to_db(np.std(samples[:, 0] - samples[:, 1]) / np.std(samples.sum(axis=1)))
    yield f"{name}: difference of the channels beside their sum, dB", side, -14, -4


def check_files(pieces):
    present = {path.stem for path in (ROOT / "sounds").glob("*.wav")}
    odd = " ".join(sorted(present ^ set(EFFECTS))) or "none"
    yield "sounds: files without bounds, bounds without a file", odd, "none"
    yield "music: pieces", len(pieces), 6
    yield "music: size, MB", sum(path.stat().st_size for path in pieces) / 1e6, 0, 12


def main():
    pieces = sorted((ROOT / "music").iterdir())
    checks = (*map(check_effect, EFFECTS), check_combos(), *map(check_piece, pieces))
    return judge(check_files(pieces)) or judge(chain(*checks))


if __name__ == "__main__":
    sys.exit(main())
