# SPDX-License-Identifier: MIT
"""Loudness of audio samples, for the checks of the sounds and the music.

Follows ITU-R BS.1770-4 (K-weighting, gated loudness, true peak) and EBU Tech
3341 and 3342 (momentary loudness, loudness range). Samples are float arrays of
shape (n, channels), full scale 1.0, with one or two channels. Results are in
LUFS, LU or dBFS.
"""
import numpy as np
from scipy import signal

SILENCE_LUFS = -120.0
MOMENTARY_S = 0.4
SHORT_TERM_S = 3.0
ABSOLUTE_GATE_LUFS = -70.0
RELATIVE_GATE_LU = -10.0
RANGE_GATE_LU = -20.0
RANGE_PERCENTILES = (10, 95)
# The two stages of the K-weighting as analogue prototypes, so that they hold at
# any sample rate: a high shelf and a high pass.
SHELF_HZ, SHELF_DB, SHELF_Q = 1681.974450955533, 3.999843853973347, 0.7071752369554196
PASS_HZ, PASS_Q = 38.13547087602444, 0.5003270373238773
TRUE_PEAK_OVERSAMPLING = 4


def weigh(samples, rate):
    """Return the samples after both stages of the K-weighting."""
    k = np.tan(np.pi * SHELF_HZ / rate)
    high = 10 ** (SHELF_DB / 20)
    band = high ** 0.4996667741545416
    norm = 1 + k / SHELF_Q + k * k
    shelf_b = np.array([high + band * k / SHELF_Q + k * k,
                        2 * (k * k - high),
                        high - band * k / SHELF_Q + k * k]) / norm
    shelf_a = np.array([1, 2 * (k * k - 1) / norm, (1 - k / SHELF_Q + k * k) / norm])
    k = np.tan(np.pi * PASS_HZ / rate)
    norm = 1 + k / PASS_Q + k * k
    pass_a = np.array([1, 2 * (k * k - 1) / norm, (1 - k / PASS_Q + k * k) / norm])
    shelved = signal.lfilter(shelf_b, shelf_a, samples, axis=0)
    return signal.lfilter([1, -2, 1], pass_a, shelved, axis=0)


def measure_windows(samples, rate, seconds, hop):
    """Return the mean square, summed over channels, of each sliding window."""
    power = np.sum(weigh(samples, rate) ** 2, axis=1)
    total = np.concatenate([[0.0], np.cumsum(power)])
    length, step = round(seconds * rate), round(hop * rate)
    starts = np.arange(0, len(power) - length + 1, step)
    return (total[starts + length] - total[starts]) / length


def to_lufs(mean_square):
    """Turn mean squares into LUFS; silence becomes SILENCE_LUFS."""
    floor = 10 ** ((SILENCE_LUFS + 0.691) / 10)
    return -0.691 + 10 * np.log10(np.maximum(mean_square, floor))


def measure_momentary(samples, rate):
    """Return the loudest 400 ms, with the sound set in silence."""
    pad = np.zeros((round(MOMENTARY_S * rate), samples.shape[1]))
    windows = measure_windows(np.vstack([pad, samples, pad]), rate, MOMENTARY_S, 0.01)
    return float(np.max(to_lufs(windows)))


def gate(windows, relative):
    """Drop windows below the absolute gate, then below the relative one."""
    loud = windows[to_lufs(windows) > ABSOLUTE_GATE_LUFS]
    if len(loud) == 0:
        return loud
    return loud[to_lufs(loud) > to_lufs(np.mean(loud)) + relative]


def measure_integrated(samples, rate):
    """Return the gated loudness of the whole."""
    kept = gate(measure_windows(samples, rate, MOMENTARY_S, 0.1), RELATIVE_GATE_LU)
    return float(to_lufs(np.mean(kept))) if len(kept) else SILENCE_LUFS


def measure_range(samples, rate):
    """Return the loudness range in LU."""
    kept = gate(measure_windows(samples, rate, SHORT_TERM_S, 0.1), RANGE_GATE_LU)
    if len(kept) == 0:
        return 0.0
    low, high = np.percentile(to_lufs(kept), RANGE_PERCENTILES)
    return float(high - low)


def measure_true_peak(samples):
    """Return the true peak in dBFS, by fourfold oversampling."""
    peak = 0.0
    for start in range(0, len(samples), 1 << 18):
        piece = samples[max(0, start - 64):start + (1 << 18) + 64]
        fine = signal.resample_poly(piece, TRUE_PEAK_OVERSAMPLING, 1, axis=0)
        peak = max(peak, float(np.max(np.abs(fine))))
    return 20 * np.log10(max(peak, 1e-6))
