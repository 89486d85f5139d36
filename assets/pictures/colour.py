# SPDX-License-Identifier: MIT
"""Colour arithmetic shared by the picture scripts and by the checks.

Pictures are composed in linear light (float arrays, 0 to 1) and leave as 8-bit
sRGB.  Sources: IEC 61966-2-1 for sRGB; CIE 15 for CIELAB (D65, 2 degrees);
Machado, Oliveira and Fernandes 2009 for the simulated deficiencies at full
severity; WCAG 2.1 for the contrast ratio.
"""
import numpy as np

LUMINANCE = np.array([0.2126, 0.7152, 0.0722])
SRGB_TO_XYZ = np.array(
    [[0.4124, 0.3576, 0.1805], [0.2126, 0.7152, 0.0722], [0.0193, 0.1192, 0.9505]]
)
D65 = np.array([0.95047, 1.0, 1.08883])
DEFICIENCIES = {
    "protan": np.array(
        [
            [0.152286, 1.052583, -0.204868],
            [0.114503, 0.786281, 0.099216],
            [-0.003882, -0.048116, 1.051998],
        ]
    ),
    "deutan": np.array(
        [
            [0.367322, 0.860646, -0.227968],
            [0.280085, 0.672501, 0.047413],
            [-0.011820, 0.042940, 0.968881],
        ]
    ),
    "tritan": np.array(
        [
            [1.255528, -0.076749, -0.178779],
            [-0.078411, 0.930809, 0.147602],
            [0.004733, 0.691367, 0.303900],
        ]
    ),
}


def to_linear(srgb8):
    """Linear light, 0 to 1, of 8-bit sRGB values."""
    value = np.asarray(srgb8, dtype=np.float64) / 255.0
    return np.where(value <= 0.04045, value / 12.92, ((value + 0.055) / 1.055) ** 2.4)


def to_srgb(linear):
    """Unrounded sRGB values, 0 to 255, of linear light; clips what lies outside."""
    value = np.clip(linear, 0.0, 1.0)
    return 255.0 * np.where(value <= 0.0031308, value * 12.92, 1.055 * value ** (1 / 2.4) - 0.055)


def to_bytes(linear):
    """8-bit sRGB of linear light."""
    return np.floor(to_srgb(linear) + 0.5).astype(np.uint8)


def luminance(linear):
    """Relative luminance of linear RGB in the last axis."""
    return np.asarray(linear) @ LUMINANCE


def lab(linear):
    """CIELAB of linear RGB in the last axis."""
    ratio = np.asarray(linear) @ SRGB_TO_XYZ.T / D65
    cube = np.where(ratio > 216 / 24389, np.cbrt(ratio), ratio * (24389 / 27) / 116 + 16 / 116)
    x, y, z = cube[..., 0], cube[..., 1], cube[..., 2]
    return np.stack([116 * y - 16, 500 * (x - y), 200 * (y - z)], axis=-1)


def luminance_of_lightness(lightness):
    """Relative luminance that has the given L*, 0 to 100."""
    root = (lightness + 16) / 116
    return root**3 if root**3 > 216 / 24389 else lightness * 27 / 24389


def simulate(linear, deficiency):
    """Linear RGB as someone with the named deficiency sees it."""
    return np.clip(np.asarray(linear) @ DEFICIENCIES[deficiency].T, 0.0, 1.0)


def contrast(first, second):
    """Contrast ratio, 1 to 21, of two linear RGB colours."""
    a, b = luminance(first), luminance(second)
    return (np.maximum(a, b) + 0.05) / (np.minimum(a, b) + 0.05)


def hex_linear(text):
    """Linear RGB of a colour written like 1d2547."""
    return to_linear([int(text[i : i + 2], 16) for i in (0, 2, 4)])
