# SPDX-License-Identifier: MIT
"""Loudness after EBU R 128, measured by ffmpeg; for the music's builder and the checks."""
import re
import subprocess

RATE = 44100
SUMMARY = {"loudness": "I", "range": "LRA", "true peak": "Peak"}
MARGIN = "adelay=400:all=1,apad=pad_dur=0.4"  # a window's length of silence on both sides


def run_filter(sound, filters, level):
    """Send a file, or samples of shape (n, 2) at RATE, through audio filters of ffmpeg."""
    if hasattr(sound, "astype"):
        form = ["-f", "f32le", "-ar", str(RATE), "-ac", "2", "-i", "-"]
        data = sound.astype("<f4").tobytes()
    else:
        form, data = ["-i", sound], None
    command = ["ffmpeg", "-v", level, "-nostats", *form, "-af", filters, "-f", "null", "-"]
    return subprocess.run(command, input=data, capture_output=True, check=True)


def measure(sound):
    """Return "loudness" in LUFS, "range" in LU and "true peak" in dBFS, to a tenth."""
    said = run_filter(sound, "ebur128=peak=true:framelog=verbose", "info").stderr.decode()
    summary = said.rpartition("Summary:")[2]
    return {
        name: float(re.search(rf"\b{letter}:\s+(\S+) ", summary).group(1))
        for name, letter in SUMMARY.items()
    }


def measure_momentary(sound):
    """Return the loudest 400 ms in LUFS, with the sound set in silence."""
    filters = f"{MARGIN},ebur128=metadata=1,ametadata=print:key=lavfi.r128.M:file=-"
    said = run_filter(sound, filters, "error").stdout.decode()
    return max(float(value) for value in re.findall(r"r128\.M=(\S+)", said))
