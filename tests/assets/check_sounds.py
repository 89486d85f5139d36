#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Checks the shipped sound effects and music against what they must measure.

Prints each criterion with its value and its bound, and exits with 1 if any fails.
Loudness is measured by loudness.py beside this file; MIDI files are rendered with
the soundfont and the gain that the game plays them with.
"""
import pathlib
import shutil
import subprocess
import sys
import tempfile
import wave

sys.dont_write_bytecode = True
try:
    import mido
    import numpy as np
    from scipy import signal

    import loudness
except ImportError as error:
    print(f"FAIL  a python module is missing: {error} (python3-numpy, python3-scipy, python3-mido)")
    print("0 passed, 1 failed")
    sys.exit(1)

ROOT = pathlib.Path(__file__).resolve().parents[2]
SOUNDFONT = pathlib.Path("/usr/share/sounds/sf2/TimGM6mb.sf2")
TOOLS = {"ffmpeg": "ffmpeg", "fluidsynth": "fluidsynth", "lame": "lame"}
SYNTH_GAIN = 1.2
# A synthesizer renders a note that never ends for ever.
TOOL_TIMEOUT_S = 60
RATE = 44100
FOLDERS_MB = 12.0

# Effect: (loudest 400 ms in LUFS, longest length in seconds).
SHORT_S, SET_S, LONG_S = 0.6, 1.4, 3.0
COMBOS = [f"combo{n}" for n in range(2, 8)]
EFFECTS = {
    "select": (-24, SHORT_S), "gemdrop": (-24, SHORT_S),
    "badswap": (-21, SHORT_S), "timerbeep": (-21, SHORT_S),
    "gotset": (-19, SET_S), "gotsetbig": (-18, SET_S),
    **{name: (-17, SET_S) for name in COMBOS},
    "explode": (-17, LONG_S), "excellent": (-15, LONG_S),
    "gameover": (-15, LONG_S), "gameoverlevel": (-15, LONG_S),
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

PIECES_MIN, LENGTH_MIN_S = 5, 90.0
MUSIC_LUFS, MUSIC_RANGE_LU, TRUE_PEAK_DBFS = (-20.0, -16.0), (3.0, 10.0), -1.0
POLYPHONY = 24
DRUM_CHANNEL = 9
PERCUSSION = {36, 37, 42, 51, 54, 60, 61, 63, 64, 69, 70, 75, 76, 77, 80, 81}
MAJOR_SCALE = (0, 2, 4, 5, 7, 9, 11)
LETTERS = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}
SIGNS = {"#": 1, "b": -1, "^": 1, "_": -1, "=": 0}

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
        return (raw.reshape(-1, file.getnchannels()) / 32768.0,
                file.getframerate(), file.getsampwidth())


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
    narrow = [p for p in peaks if p >= low and level[p] - TONE_NARROW_DB
              > max(level[round(p / aside)], level[round(p * aside)])]
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


def check_effect(name, samples):
    """Check what holds for every single effect."""
    target, longest = EFFECTS[name]
    report_most(name, "length", len(samples) / RATE, longest, " s")
    report_most(name, "first and last sample", np.abs(samples[[0, -1]]).max(), EDGE)
    end = np.abs(samples[-round(END_S * RATE):]).max()
    report_most(name, "last 10 ms", to_db(end), END_DBFS, " dBFS")
    report_range(name, "peak", to_db(np.abs(samples).max()), *PEAK_DBFS, " dBFS")
    report_most(name, "longest clipped run", find_longest_clip(samples), CLIPPED_RUN - 1)
    report_most(name, "direct current", np.abs(samples.mean(axis=0)).max(), DC)
    report_range(name, "loudest 400 ms", loudness.measure_momentary(samples, RATE),
                 target - LOUDNESS_SLACK, target + LOUDNESS_SLACK, " LUFS")
    report_most(name, "energy above 8 kHz", measure_spectrum(samples)[1], BRIGHT_PERCENT, " %")
    tones, _ = find_tones(samples)
    stray = max((stray_from_key(tone) for tone in tones), default=1200.0)
    report_most(name, f"off the key, {len(tones)} tones", stray, TUNING_CENTS, " cents")


def find_top_note(samples):
    """Return the strongest tone after the run, in Hz: the note a combo arrives at."""
    tones, levels = find_tones(samples[round(RUN_OVER_S * RATE):])
    return float(tones[np.argmax(levels)]) if len(tones) else 0.0


def check_effects():
    """Check the folder of effects; return the effects that could be read."""
    effects = {}
    present = {path.name for path in (ROOT / "sounds").glob("*")}
    wanted = {name + ".wav" for name in EFFECTS}
    report("sounds", "files", len(present), "the effects", present == wanted)
    for name in EFFECTS:
        try:
            samples, rate, width = read_wave(ROOT / "sounds" / (name + ".wav"))
        except (OSError, EOFError, ValueError, wave.Error) as error:
            report(name, "readable as PCM", repr(error)[:40], "yes", False)
            continue
        report(name, "format", f"{8 * width} bit {rate}", "16 bit 44100",
               (width, rate) == (2, RATE))
        check_effect(name, samples)
        effects[name] = samples
    if all(name in effects for name in COMBOS):
        report_rise("combos", "centroid, Hz", [measure_spectrum(effects[n])[0] for n in COMBOS])
        report_rise("combos", "top note, Hz", [find_top_note(effects[n]) for n in COMBOS])


def read_source(name):
    """Return (key, allowed pitch classes) that a piece's source writes down."""
    head = dict(line.split(maxsplit=1)
                for line in (ROOT / "assets/music" / f"{name}.piece").read_text().splitlines()
                if line.startswith(("key ", "accidentals ")))
    key = head["key"]
    tonic = LETTERS[key[0]] + SIGNS.get(key[1:], 0)
    allowed = {(tonic + step) % 12 for step in MAJOR_SCALE}
    for word in head.get("accidentals", "").split():
        allowed.add((LETTERS[word.strip("#b^_=")] + sum(SIGNS.get(c, 0) for c in word)) % 12)
    return key, allowed


def follow_notes(song):
    """Play a MIDI file on paper; return (orphans, stuck, polyphony, pitches, drums)."""
    sounding, orphans, most = set(), 0, 0
    pitches, drums = set(), set()
    for message in mido.merge_tracks(song.tracks):
        if message.type not in ("note_on", "note_off"):
            continue
        note = (message.channel, message.note)
        if message.type == "note_on" and message.velocity > 0:
            orphans += note in sounding
            sounding.add(note)
            (drums if message.channel == DRUM_CHANNEL else pitches).add(message.note)
        else:
            orphans += note not in sounding
            sounding.discard(note)
        most = max(most, len(sounding))
    return orphans, len(sounding), most, pitches, drums


def check_midi(path):
    """Check the notes of a MIDI file; return False if it cannot be read or never ends."""
    name = path.stem
    try:
        song = mido.MidiFile(path)
        key, allowed = read_source(name)
    except (OSError, EOFError, ValueError, KeyError) as error:
        report(name, "readable", repr(error)[:40], "yes", False)
        return False
    orphans, stuck, most, pitches, drums = follow_notes(song)
    report_most(name, "orphaned or struck twice", orphans, 0)
    report_most(name, "notes left sounding", stuck, 0)
    report_range(name, "polyphony", most, 1, POLYPHONY)
    tempos = [m for m in mido.merge_tracks(song.tracks) if m.type == "set_tempo"]
    report(name, "tempo set", f"{len(tempos)} times", "once (see write_midi.py)", len(tempos) == 1)
    written = {m.key for track in song.tracks for m in track if m.type == "key_signature"}
    report(name, "key signature", "/".join(sorted(written)), key, written == {key})
    strange = sorted({pitch % 12 for pitch in pitches} - allowed)
    report(name, "pitch classes off the key", str(strange), "none", not strange)
    report(name, "percussion off the list", str(sorted(drums - PERCUSSION)), "none",
           drums <= PERCUSSION)
    return stuck == 0


def run_tool(*command):
    """Run a tool; return its standard output, or None if it failed or hung."""
    try:
        done = subprocess.run([str(part) for part in command], capture_output=True,
                              timeout=TOOL_TIMEOUT_S)
    except subprocess.TimeoutExpired:
        return None
    return done.stdout if done.returncode == 0 else None


def render(path, scratch):
    """Return the samples of a piece as it is heard, or None."""
    if path.suffix == ".mid":
        out = scratch / "midi.raw"
        done = run_tool("fluidsynth", "-ni", "-q", "-r", RATE, "-g", SYNTH_GAIN, "-T", "raw",
                        "-O", "float", "-F", out, SOUNDFONT, path)
        raw = out.read_bytes() if done is not None else None
    else:
        raw = run_tool("ffmpeg", "-v", "error", "-i", path, "-f", "f32le", "-ac", 2,
                       "-ar", RATE, "-")
    if not raw:
        return None
    return np.frombuffer(raw, "<f4").reshape(-1, 2).astype(float)


def read_gapless(data):
    """Return (frames, delay, padding) of the LAME tag, or None if there is none."""
    at = max(data.find(b"Xing", 0, 8192), data.find(b"Info", 0, 8192))
    if at < 0 or data[at + 120:at + 124] != b"LAME":
        return None
    delays = int.from_bytes(data[at + 141:at + 144], "big")
    return int.from_bytes(data[at + 8:at + 12], "big"), delays >> 12, delays & 0xFFF


def check_gapless(path, samples):
    """Check that the tag of an MP3 file tells its true length to two decoders."""
    tag = read_gapless(path.read_bytes())
    if tag is None:
        report(path.stem, "gapless tag", "none", "a LAME tag", False)
        return
    frames, delay, padding = tag
    length = frames * 1152 - delay - padding
    report(path.stem, "samples by tag, by ffmpeg", f"{length} {len(samples)}", "equal",
           length == len(samples))
    raw = run_tool("lame", "--quiet", "--decode", "-t", path, "-")
    count = len(raw) // 4 if raw else 0
    report(path.stem, "samples by tag, by lame", f"{length} {count}", "equal", length == count)


def check_piece(path, scratch):
    """Check one piece of music by its notes and by its sound."""
    name = path.stem
    if path.suffix == ".mid" and not check_midi(path):
        return
    samples = render(path, scratch)
    if samples is None:
        report(name, "plays", "no", "yes", False)
        return
    if path.suffix == ".mp3":
        check_gapless(path, samples)
    seconds = len(samples) / RATE
    report(name, "length", f"{seconds:.1f} s", f"at least {LENGTH_MIN_S:g} s",
           seconds >= LENGTH_MIN_S)
    report_most(name, "first and last sample", np.abs(samples[[0, -1]]).max(), EDGE)
    report_range(name, "loudness", loudness.measure_integrated(samples, RATE), *MUSIC_LUFS,
                 " LUFS")
    report_range(name, "loudness range", loudness.measure_range(samples, RATE),
                 *MUSIC_RANGE_LU, " LU")
    report_most(name, "true peak", loudness.measure_true_peak(samples), TRUE_PEAK_DBFS, " dBFS")


def check_music():
    """Check the folder of music."""
    paths = sorted((ROOT / "music").glob("*"))
    report("music", "pieces", len(paths), f"at least {PIECES_MIN}", len(paths) >= PIECES_MIN)
    kinds = {path.suffix for path in paths}
    report("music", "kinds of file", " ".join(sorted(kinds)), ".mid and .mp3 alone",
           kinds == {".mid", ".mp3"})
    with tempfile.TemporaryDirectory() as scratch:
        for path in paths:
            check_piece(path, pathlib.Path(scratch))
            for left in pathlib.Path(scratch).iterdir():
                left.unlink()


def check_sizes():
    """Check that both folders together stay small."""
    size = sum(path.stat().st_size for folder in ("sounds", "music")
               for path in (ROOT / folder).glob("*"))
    report_most("both folders", "size", size / 1e6, FOLDERS_MB, " MB")


def main():
    missing = [f"{tool}: install {package}" for tool, package in TOOLS.items()
               if not shutil.which(tool)]
    if not SOUNDFONT.exists():
        missing.append("the soundfont: install timgm6mb-soundfont")
    if missing:
        report("tools", "missing", "", "; ".join(missing), False)
    else:
        check_effects()
        check_music()
        check_sizes()
    print(f"{results['passed']} passed, {results['failed']} failed")
    return 1 if results["failed"] else 0


if __name__ == "__main__":
    sys.exit(main())
