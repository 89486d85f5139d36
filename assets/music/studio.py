# SPDX-License-Identifier: MIT
"""Performs a piece voice by voice, mixes it and writes it as an MP3 file.

Run by build-sounds, which names what is missing: python3 -m music.studio SOUNDFONT SOURCE TARGET
"""
import os
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import numpy as np
from scipy.io import wavfile

from music import desk, midi, perform, piece

# The finest interpolation of samples that the synthesizer has; it has no option for it.
SYNTH_COMMANDS = "interp 7\n"
SYNTH_GAIN = 0.5
SYNTH_SETTINGS = ("synth.polyphony=512", "synth.dynamic-sample-loading=1")
ARTIST, ALBUM = "The Glimmerfall authors", "Glimmerfall"
MP3_QUALITY = 4.9  # six pieces in 12 MB


def run_tool(*command):
    """Run a tool quietly."""
    subprocess.run([str(part) for part in command], stdout=subprocess.DEVNULL, check=True)


def play_voice(soundfont, voice, spans, scratch):
    """Return the samples of one voice, without any hall."""
    notes, sound, commands = (scratch / (voice.name + end) for end in (".mid", ".raw", ".cmd"))
    midi.write_voice(voice, spans, notes)
    commands.write_text(SYNTH_COMMANDS)
    settings = [part for setting in SYNTH_SETTINGS for part in ("-o", setting)]
    run_tool(
        *("fluidsynth", "-n", "-i", "-q", "-f", commands, "-R", "0", "-C", "0", *settings),
        *("-g", SYNTH_GAIN, "-r", desk.RATE, "-T", "raw", "-O", "float", "-F", sound),
        *(soundfont, notes),
    )
    return np.fromfile(sound, "<f4").reshape(-1, 2).astype(float)


def encode(samples, work, name, target):
    """Write the samples as an MP3 file, with the performance's name as its comment."""
    wave = target.with_suffix(".wav")
    wavfile.write(wave, desk.RATE, np.round(samples * (2**31 - 1)).astype("<i4"))
    run_tool(
        *("lame", "--quiet", "-q", "0", "-m", "j", "-V", MP3_QUALITY, "--noreplaygain"),
        *("--id3v2-only", "--id3v2-latin1", "--tt", work.title, "--ta", ARTIST, "--tl", ALBUM),
        *("--tc", name, wave, target),
    )


def main(soundfont, source, target):
    try:
        work = piece.read_piece(source)
        performance = perform.perform_piece(work)
    except piece.SourceError as error:
        sys.exit(f"{source.name}: {error}")
    with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor(os.cpu_count()) as pool:
        scratch = Path(folder)

        def play(voice):
            return voice, play_voice(soundfont, voice, performance.collect_spans(voice), scratch)

        stems = pool.map(play, work.voices.values())
        mixed = desk.mix(stems, performance.to_seconds(performance.end), work.hall)
        encode(mixed, work, performance.identify(work), scratch / target.name)
        target.write_bytes((scratch / target.name).read_bytes())


if __name__ == "__main__":
    main(sys.argv[1], Path(sys.argv[2]), Path(sys.argv[3]))
