# SPDX-License-Identifier: MIT
"""Mixes the voices of a piece in one hall.

Samples are float arrays of shape (n, 2), full scale 1.0, at RATE.
"""
import loudness
import numpy as np
from scipy import fft, ndimage, signal

RATE = loudness.RATE
LEAD_S = 0.05  # silence before the first note, so that a decoder's start cannot cut it
FADE_S = 1.5
PIECE_LUFS = -19.5
HALL_SHARE = 0.55
HALL_CROSSING = 0.3  # what each side of the hall hears of the other side's voices

# The hall: its decay relative to that at 1 kHz, and its level, by octaves from 125 Hz.
LOWEST_OCTAVE_HZ = 125
DECAYS = (1.1, 1.08, 1.04, 1.0, 0.88, 0.68, 0.45)
LEVELS = (0.55, 0.8, 1.0, 1.0, 0.85, 0.6, 0.3)
HALL_SEED = 3
PREDELAY_S = 0.016
BUILD_UP_S = 0.02
TAIL_LEVEL, EARLY_LEVEL = 0.85, 0.5
FIRST_ECHO_S, LAST_ECHO_S = 0.007, 0.085
ECHO_LOW_PASS_HZ = 5500
HALL_HIGH_PASS_HZ = 150
SHELF_HZ = 2500
CEILING = 10 ** (-2.5 / 20)  # leaves room for what MP3 adds to a peak
LIMITER_S = 0.01


def high_pass(samples, hertz):
    """Take out what lies below a frequency."""
    return signal.sosfilt(signal.butter(2, hertz, "high", output="sos", fs=RATE), samples, axis=0)


def shelve(samples, gain):
    """Raise or lower the treble by a gain in dB (a first-order shelf)."""
    low = signal.sosfilt(signal.butter(1, SHELF_HZ, output="sos", fs=RATE), samples, axis=0)
    return low + (samples - low) * 10 ** (gain / 20)


def place(samples, pan, width):
    """Scale the width of a stereo sound and turn it to its place, 0 (left) to 127 (right)."""
    middle, side = samples.mean(axis=1), (samples[:, 0] - samples[:, 1]) / 2 * width
    angle = pan / 127 * np.pi / 2
    left = (middle + side) * np.cos(angle)
    right = (middle - side) * np.sin(angle)
    return np.stack([left, right], axis=1) * np.sqrt(2)


def scatter_echoes(chance, count):
    """Return the early echoes of one wall: ever denser, ever softer."""
    echoes, at = np.zeros(count), FIRST_ECHO_S
    while at < LAST_ECHO_S:
        echoes[round(at * RATE)] += chance.choice((-1, 1)) * (FIRST_ECHO_S / at) ** 0.7
        at *= 1.12 + 0.25 * chance.random()
    return signal.sosfilt(signal.butter(1, ECHO_LOW_PASS_HZ, output="sos", fs=RATE), echoes)


def decay_noise(chance, count, seconds):
    """Return a tail of noise, each octave of which fades by 60 dB in a time of its own."""
    time = np.arange(count) / RATE
    octave = np.log2(np.maximum(fft.rfftfreq(count, 1 / RATE), 1) / LOWEST_OCTAVE_HZ)
    octave = np.clip(octave, 0, len(DECAYS) - 1)
    spectrum, tail = fft.rfft(chance.standard_normal(count)), np.zeros(count)
    for number, (decay, level) in enumerate(zip(DECAYS, LEVELS)):
        share = np.sin(np.pi / 2 * np.clip(1 - np.abs(octave - number), 0, 1))
        band = fft.irfft(spectrum * share, count)
        tail += level * band * 10 ** (-3 * time / (seconds * decay))
    silent = round(PREDELAY_S * RATE)
    tail *= 1 - np.exp(-time / BUILD_UP_S)
    return np.concatenate([np.zeros(silent), tail[:-silent]])


def build_hall(seconds):
    """Return the impulse response of a hall that fades by 60 dB in these seconds."""
    chance, count = np.random.default_rng(HALL_SEED), round(seconds * 1.25 * RATE)
    tail = np.stack([decay_noise(chance, count, seconds) for _ in range(2)], axis=1)
    early = np.stack([scatter_echoes(chance, count) for _ in range(2)], axis=1)
    shares = ((tail, TAIL_LEVEL), (early, EARLY_LEVEL))
    hall = sum(level * part / np.sqrt((part**2).sum() / 2) for part, level in shares)
    return high_pass(hall, HALL_HIGH_PASS_HZ)


def set_voice(voice, samples):
    """Return a voice at its level and its place, with the tone that its source asks for."""
    samples = shelve(high_pass(samples, voice.cut), voice.treble)
    samples = place(samples, voice.pan, voice.width)
    return samples * 10 ** ((voice.level - loudness.measure(samples)["loudness"]) / 20)


def limit(samples):
    """Turn the sound down around the few peaks above the ceiling, softly and ahead of them."""
    peaks = np.abs(samples).max(axis=1)
    reach = 2 * round(LIMITER_S * RATE) + 1
    held = ndimage.minimum_filter1d(CEILING / np.maximum(peaks, CEILING), reach)
    return samples * ndimage.uniform_filter1d(held, reach)[:, np.newaxis]


def mix(stems, seconds, hall):
    """Mix (voice, samples) pairs; `seconds` is the end of the notes, `hall` its decay."""
    lead, count = round(LEAD_S * RATE), round((LEAD_S + seconds + 1 + 1.3 * hall) * RATE)
    dry, sent = np.zeros((count, 2)), np.zeros((count, 2))
    for voice, samples in stems:
        placed = set_voice(voice, samples)[: count - lead]
        dry[lead : lead + len(placed)] += placed
        sent[lead : lead + len(placed)] += placed * voice.hall / 127
    sent = (1 - HALL_CROSSING) * sent + HALL_CROSSING * sent[:, ::-1]
    wet = signal.oaconvolve(sent, build_hall(hall), axes=0)[:count]
    whole = dry + HALL_SHARE * wet
    fade = round(FADE_S * RATE)
    whole[-fade:] *= np.linspace(1, 0, fade)[:, np.newaxis] ** 2
    return limit(whole * 10 ** ((PIECE_LUFS - loudness.measure(whole)["loudness"]) / 20))
