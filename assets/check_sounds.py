#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Checks the shipped sound effects and music against what they must measure.

Prints each criterion with its value and its bound, and exits with 1 if any fails.
"""
import json
import shutil
import subprocess
import sys
import wave
from pathlib import Path

import loudness

try:
    import numpy as np
    from scipy import signal
except ImportError as missing_module:
    sys.exit(f"FAIL  {missing_module}: install python3-numpy and python3-scipy")

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
LOUDNESS_SLACK = 2.0
EDGE = 0.001
END_S, END_DBFS = 0.010, -60.0
PEAK_DBFS = (-12.0, -1.0)
CLIPPED_RUN = 3
DC = 0.001
BRIGHT_HZ, BRIGHT_PERCENT = 8000, 2.0

# Tonal peaks: how far below the strongest one still counts, how narrow it must
# be, and where it is looked for.
TUNING_CENTS = 30.0
TONE_HZ = (190.0, 5000.0)
TONE_DEPTH_DB, TONE_NARROW_DB, TONE_NARROW_CENTS = 20.0, 9.0, 100
D_MAJOR = (2, 4, 6, 7, 9, 11, 1)
RUN_OVER_S = 0.25

# The music: bounds of each piece, and of the folder.
PIECES, LENGTH_MIN_S, MUSIC_MB = 6, 90.0, 12.0
MUSIC_LUFS, MUSIC_RANGE_LU, TRUE_PEAK_DBFS = (-19.7, -19.2), (3.0, 10.0), -1.0
# The difference of the channels beside their sum: wide enough, and whole on one loudspeaker.
SIDE_DB = (-14.0, -4.0)
FRAME = 1152  # samples of an MP3 frame

results = {"passed": 0, "failed": 0}


def report(name, criterion, value, bound, good):
    """Print one criterion and count it."""
    results["passed" if good else "failed"] += 1
    print(f"{'ok  ' if good else 'FAIL'}  {name:14} {criterion:28} {value:>14}   {bound}")


def report_range(name, criterion, value, low, high, unit=""):
    """Print a criterion that must lie between two bounds."""
    bound = f"{low:g} to {high:g}{unit}"
    report(name, criterion, f"{value:.2f}{unit}", bound, low <= value <= high)


def report_most(name, criterion, value, most, unit=""):
    """Print a criterion that has an upper bound."""
    report(name, criterion, f"{value:.4g}{unit}", f"at most {most:g}{unit}", value <= most)


def report_rise(name, criterion, values):
    """Print a criterion whose values must grow from each to the next."""
    grows = all(a < b for a, b in zip(values, values[1:]))
    report(name, criterion, " ".join(f"{v:.0f}" for v in values), "strictly rising", grows)


def to_db(value):
    return 20 * np.log10(max(float(value), 1e-9))


def read_wave(path):
    """Return (samples, rate, bytes a sample) of a PCM wave file."""
    with wave.open(str(path)) as file:
        raw = np.frombuffer(file.readframes(file.getnframes()), "<i2")
        return (
            raw.reshape(-1, file.getnchannels()) / 32768.0,
            file.getframerate(),
            file.getsampwidth(),
        )


def find_longest_clip(samples):
    """Return the longest run of samples at full scale, in any channel."""
    longest = 0
    for channel in samples.T:
        full = np.concatenate([[0], np.abs(channel) >= 32767 / 32768, [0]])
        edges = np.flatnonzero(np.diff(full))
        if len(edges):
            longest = max(longest, int(np.max(edges[1::2] - edges[::2])))
    return longest


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
    """Return (centroid in Hz, per cent of the energy above BRIGHT_HZ)."""
    power = np.sum(np.abs(np.fft.rfft(samples, axis=0)) ** 2, axis=1)
    frequency = np.fft.rfftfreq(len(samples), 1 / RATE)
    bright = power[frequency > BRIGHT_HZ].sum() / power.sum() * 100
    return float((frequency * power).sum() / power.sum()), float(bright)


def check_effect(path, samples):
    """Check what holds for every single effect."""
    name = path.stem
    target, longest = EFFECTS[name]
    report_most(name, "length", len(samples) / RATE, longest, " s")
    report_most(name, "first and last sample", np.abs(samples[[0, -1]]).max(), EDGE)
    end = np.abs(samples[-round(END_S * RATE) :]).max()
    report_most(name, "last 10 ms", to_db(end), END_DBFS, " dBFS")
    report_range(name, "peak", to_db(np.abs(samples).max()), *PEAK_DBFS, " dBFS")
    report_most(name, "longest clipped run", find_longest_clip(samples), CLIPPED_RUN - 1)
    report_most(name, "direct current", np.abs(samples.mean(axis=0)).max(), DC)
    report_range(
        name,
        "loudest 400 ms",
        loudness.measure_momentary(path),
        target - LOUDNESS_SLACK,
        target + LOUDNESS_SLACK,
        " LUFS",
    )
    report_most(name, "energy above 8 kHz", measure_spectrum(samples)[1], BRIGHT_PERCENT, " %")
    tones, _ = find_tones(samples)
    stray = max((stray_from_key(tone) for tone in tones), default=1200.0)
    report_most(name, f"off the key, {len(tones)} tones", stray, TUNING_CENTS, " cents")


def find_top_note(samples):
    """Return the strongest tone after the run, in Hz: the note a combo arrives at."""
    tones, levels = find_tones(samples[round(RUN_OVER_S * RATE) :])
    return float(tones[np.argmax(levels)]) if len(tones) else 0.0


def check_effects():
    """Check the folder of effects."""
    effects = {}
    present = {path.name for path in (ROOT / "sounds").glob("*")}
    wanted = {name + ".wav" for name in EFFECTS}
    report("sounds", "files", len(present), f"the {len(wanted)} effects", present == wanted)
    for name in EFFECTS:
        path = ROOT / "sounds" / (name + ".wav")
        try:
            samples, rate, width = read_wave(path)
        except (OSError, EOFError, ValueError, wave.Error) as error:
            report(name, "readable as PCM", repr(error)[:40], "yes", False)
            continue
        report(
            name, "format", f"{8 * width} bit {rate}", "16 bit 44100", (width, rate) == (2, RATE)
        )
        check_effect(path, samples)
        effects[name] = samples
    if all(name in effects for name in COMBOS):
        report_rise("combos", "centroid, Hz", [measure_spectrum(effects[n])[0] for n in COMBOS])
        report_rise("combos", "top note, Hz", [find_top_note(effects[n]) for n in COMBOS])


def read_tags(path):
    """Return the tags of a sound file."""
    command = ["ffprobe", "-v", "error", "-of", "json", "-show_entries", "format_tags", path]
    done = subprocess.run(command, capture_output=True, check=True)
    return json.loads(done.stdout)["format"].get("tags", {})


def read_music(path):
    """Return the samples of a piece as it is heard."""
    command = ["ffmpeg", "-v", "error", "-i", path, "-f", "f32le", "-ac", "2", "-ar", str(RATE)]
    done = subprocess.run([*command, "-"], capture_output=True, check=True)
    return np.frombuffer(done.stdout, "<f4").reshape(-1, 2).astype(float)


def read_length(data):
    """Return the samples that the LAME tag of an MP3 file counts, or 0 if there is no tag."""
    at = max(data.find(b"Xing", 0, 8192), data.find(b"Info", 0, 8192))
    if at < 0 or data[at + 120 : at + 124] != b"LAME":
        return 0
    frames = int.from_bytes(data[at + 8 : at + 12], "big")
    delays = int.from_bytes(data[at + 141 : at + 144], "big")
    return frames * FRAME - (delays >> 12) - (delays & 0xFFF)


def check_piece(path):
    """Check one piece of music."""
    name, tags, samples = path.stem, read_tags(path), read_music(path)
    title = name.replace("-", " ").title()
    report(name, "title", tags.get("title", "none"), title, tags.get("title") == title)
    length = read_length(path.read_bytes())
    report(name, "samples by its tag", length, len(samples), length == len(samples))
    seconds = len(samples) / RATE
    report(
        name, "length", f"{seconds:.1f} s", f"at least {LENGTH_MIN_S:g} s", seconds >= LENGTH_MIN_S
    )
    report_most(name, "first and last sample", np.abs(samples[[0, -1]]).max(), EDGE)
    heard = loudness.measure(path)
    report_range(name, "loudness", heard["loudness"], *MUSIC_LUFS, " LUFS")
    report_range(name, "loudness range", heard["range"], *MUSIC_RANGE_LU, " LU")
    report_most(name, "true peak", heard["true peak"], TRUE_PEAK_DBFS, " dBFS")
    side = to_db(np.std(samples[:, 0] - samples[:, 1]) / np.std(samples.sum(axis=1)))
    report_range(name, "side beside middle", side, *SIDE_DB, " dB")


def check_music():
    """Check the folder of music."""
    paths = sorted((ROOT / "music").glob("*"))
    right = len(paths) == PIECES and all(path.suffix == ".mp3" for path in paths)
    report("music", "files", len(paths), f"{PIECES}, all MP3", right)
    report_most("music", "size", sum(path.stat().st_size for path in paths) / 1e6, MUSIC_MB, " MB")
    for path in paths:
        check_piece(path)


def main():
    if not shutil.which("ffmpeg"):
        sys.exit("FAIL  ffmpeg is missing: install ffmpeg")
    check_effects()
    check_music()
    print(f"{results['passed']} passed, {results['failed']} failed")
    return 1 if results["failed"] else 0


if __name__ == "__main__":
    sys.exit(main())
