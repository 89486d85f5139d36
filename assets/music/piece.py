# SPDX-License-Identifier: MIT
"""Reads the text source of a piece of music.

A source names the piece, its voices and figures, writes out its sections, and
lists them in the order in which they are played. Melodies stand in the note
syntax of ABC notation (abcnotation.com, standard 2.1) with an eighth note as the
unit; accompaniments are figures laid over the chords. README.md in this folder
tells the format line by line. Times are in quarter notes throughout.
A mistake in a source raises SourceError, which names the section and the voice.
"""
import dataclasses
import re

UNIT = 0.5
STEPS = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}
ACCIDENTALS = {"^": 1, "_": -1, "=": 0}
SHARP_ORDER, FLAT_ORDER = "FCGDAEB", "BEADGCF"
MAJOR_SHARPS = {"C": 0, "G": 1, "D": 2, "A": 3, "E": 4, "F": -1, "Bb": -2}
# Semitones above the root of third, fifth, seventh and ninth. Where a chord has
# no seventh the octave stands in for it.
CHORDS = {
    "": (4, 7, 12, 14),
    "m": (3, 7, 12, 14),
    "7": (4, 7, 10, 14),
    "m7": (3, 7, 10, 14),
    "maj7": (4, 7, 11, 14),
    "6": (4, 7, 9, 14),
    "m6": (3, 7, 9, 14),
    "sus4": (5, 7, 12, 14),
    "sus2": (2, 7, 12, 14),
    "7sus4": (5, 7, 10, 14),
    "add9": (4, 7, 12, 14),
    "m9": (3, 7, 10, 14),
    "maj9": (4, 7, 11, 14),
    "dim": (3, 6, 12, 14),
}
NINTHS = ("add9", "m9", "maj9")
DRUMS = {
    "k": 36,
    "s": 37,
    "n": 38,
    "h": 42,
    "r": 51,
    "t": 54,
    "b": 61,
    "B": 60,
    "G": 63,
    "g": 64,
    "c": 69,
    "m": 70,
    "C": 75,
    "w": 76,
    "v": 77,
    "j": 80,
    "i": 81,
}
NOTE = re.compile(r"([_^=]?)([A-Ga-g])([,']*)")
TOKEN = re.compile(r"(z|\[[^\]]+\]|[_^=]?[A-Ga-g][,']*)(\d*)(/?)(-?)([!?]?)")
CHORD = re.compile(r"([A-G])([#b]?)([a-z0-9]*)(?:/([A-G])([#b]?))?$")


class SourceError(Exception):
    """A source that cannot be read; the text says where and why."""


@dataclasses.dataclass
class Voice:
    """One instrument. Velocity, pan and hall run from 0 to 127."""

    name: str
    program: int = 0  # General MIDI program, from 0; for drums the kit
    drums: bool = False
    bass: bool = False  # takes the note under the stroke of a chord such as D/F#
    velocity: int = 80
    level: float = -20.0  # loudness where it plays, in LUFS beside the other voices
    pan: int = 64
    width: float = 1.0  # of the instrument's stereo picture
    hall: int = 50  # share that goes into the hall
    cut: int = 75  # nothing below this frequency, in Hz
    treble: float = 0.0  # dB above 2.5 kHz
    low: int = 48  # lowest place of a figure's root, as a MIDI pitch
    hold: float = 0.95  # sounding part of a written length
    after: float = 0.0  # seconds for which a struck note rings on
    ring: bool = False  # figure notes sound on to the end of their chord
    swell: bool = False  # long notes open and close, as breath or bow does
    roll: float = 0.0  # milliseconds between the notes of a chord
    loose: float = 6.0  # milliseconds by which timing strays


@dataclasses.dataclass
class Event:
    """One written note: pitches sound together; accent is -1, 0 or 1."""

    start: float
    length: float
    pitches: tuple
    accent: int = 0


@dataclasses.dataclass
class Chord:
    start: float
    length: float
    root: int
    tones: tuple
    bass: int
    ninth: bool


@dataclasses.dataclass
class Section:
    """Bars of chords, and for each voice its bars as written."""

    bars: int
    chords: list
    lines: dict


@dataclasses.dataclass
class Passage:
    """One entry of the form: a section, how loud, who rests, who takes whose line."""

    section: str
    level: tuple = (100.0, 100.0)
    without: tuple = ()
    moved: tuple = ()
    tempo: float = 1.0
    slow: float = 1.0


@dataclasses.dataclass
class Piece:
    title: str = ""
    key: str = "D"  # the major key of the signature, also for a minor piece
    accidentals: tuple = ()  # notes outside the key, such as ^C; any others are refused
    beats: int = 4
    beat_type: int = 4
    tempo: float = 100.0
    swing: float = 0.5
    seed: int = 1
    hall: float = 1.6  # seconds in which the hall fades by 60 dB
    voices: dict = dataclasses.field(default_factory=dict)
    figures: dict = dataclasses.field(default_factory=dict)
    sections: dict = dataclasses.field(default_factory=dict)
    form: list = dataclasses.field(default_factory=list)

    @property
    def bar(self):
        """Length of a bar in quarter notes."""
        return self.beats * 4 / self.beat_type

    @property
    def pulse(self):
        """Length of a felt beat in quarter notes."""
        return 1.5 if self.beat_type == 8 else 1.0


def sign_key(key):
    """Return the semitone shift of each letter under a major key's signature."""
    count = MAJOR_SHARPS[key]
    letters = SHARP_ORDER[:count] if count > 0 else FLAT_ORDER[:-count]
    return {letter: 1 if count > 0 else -1 for letter in letters}


def read_pitch(text, signature):
    """Turn one ABC note such as ^f' into a MIDI pitch; middle C, 60, is C."""
    sign, letter, octave = NOTE.match(text).groups()
    shift = ACCIDENTALS[sign] if sign else signature.get(letter.upper(), 0)
    pitch = 60 + STEPS[letter.upper()] + shift + (12 if letter.islower() else 0)
    return pitch + 12 * (octave.count("'") - octave.count(","))


def read_notes(text, start, signature):
    """Read one bar of ABC notes; return its events and its length."""
    events, at = [], start
    for word in text.split():
        match = TOKEN.fullmatch(word)
        if not match:
            raise SourceError(f"no note: {word}")
        body, count, half, tied, mark = match.groups()
        length = UNIT * int(count or 1) / (2 if half else 1)
        if body != "z":
            names = [m.group(0) for m in NOTE.finditer(body)]
            pitches = tuple(read_pitch(name, signature) for name in names)
            accent = {"!": 1, "?": -1, "": 0}[mark]
            events.append((Event(at, length, pitches, accent), bool(tied)))
        at += length
    return events, at - start


def read_chord(name, start, length):
    """Read a chord symbol such as Bm7 or D/F#."""
    match = CHORD.match(name)
    if not match or match.group(3) not in CHORDS:
        raise SourceError(f"no chord: {name}")
    letter, sign, quality, low, low_sign = match.groups()
    shift = {"#": 1, "b": -1, "": 0, None: 0}
    root = (STEPS[letter] + shift[sign]) % 12
    bass = (STEPS[low] + shift[low_sign]) % 12 if low else root
    return Chord(start, length, root, CHORDS[quality], bass, quality in NINTHS)


def read_chords(text, bar):
    """Read a line of chords; those that share a bar share it evenly."""
    chords = []
    for number, names in enumerate(part.split() for part in text.split("|")):
        for place, name in enumerate(names):
            length = bar / len(names)
            chords.append(read_chord(name, number * bar + place * length, length))
    return chords


def read_figure(text):
    """Read a figure: a list of steps, each (names, accent, length in steps)."""
    steps = []
    for word in text.split():
        if word == "-" and steps:
            steps[-1][2] += 1
            continue
        accent = {"!": 1, "?": -1}.get(word[-1], 0)
        names = () if word == "." else tuple(word.rstrip("!?").split("+"))
        steps.append([names, accent, 1])
    return steps


def read_setting(piece, word, rest):
    """Take one line of the head of a source."""
    if word == "meter":
        piece.beats, piece.beat_type = (int(part) for part in rest.split("/"))
    elif word == "accidentals":
        piece.accidentals = tuple(rest.split())
    elif word in ("tempo", "swing", "hall"):
        setattr(piece, word, float(rest))
    elif word == "seed":
        piece.seed = int(rest)
    else:
        setattr(piece, word, rest)


def read_voice(text):
    """Read one voice line: its name, then field=value for what differs."""
    name, *settings = text.split()
    fields = {field.name: field.type for field in dataclasses.fields(Voice)}
    values = {}
    for setting in settings:
        field, _, value = setting.partition("=")
        if field not in fields:
            raise SourceError(f"voice {name}: no field {field}")
        kind = fields[field]
        values[field] = value == "yes" if kind is bool else kind(value)
    return Voice(name, **values)


def read_passage(text):
    """Read one line of the form."""
    name, *settings = text.split()
    passage = Passage(name)
    for setting in settings:
        field, _, value = setting.partition("=")
        if field == "level":
            ends = [float(part) for part in value.split(">")]
            passage.level = (ends[0], ends[-1])
        elif field == "without":
            passage.without = tuple(value.split(","))
        elif field == "move":
            passage.moved += (re.match(r"(\w+)>(\w+)([+-]\d+)?$", value).groups(),)
        elif field in ("tempo", "slow"):
            setattr(passage, field, float(value))
        else:
            raise SourceError(f"form: no setting {field}")
    return passage


def read_body(piece, lines):
    """Gather the lines of each section; return them as {section: {voice: text}}."""
    sections, place = {}, None
    for line in lines:
        word, _, rest = line.partition(" ")
        rest = rest.strip()
        if word == "voice":
            voice = read_voice(rest)
            piece.voices[voice.name] = voice
        elif word == "figure":
            name, _, steps = rest.partition(" ")
            piece.figures[name] = read_figure(steps)
        elif word == "section":
            place = sections.setdefault(rest, {})
        elif word == "form":
            place = None
            piece.form = []
        elif word == "play":
            piece.form.append(read_passage(rest))
        elif place is None:
            read_setting(piece, word, rest)
        else:
            place[word] = (place[word] + " | " + rest) if word in place else rest
    return sections


def read_piece(path):
    """Read a source file into a Piece, and check that every bar is full."""
    piece = Piece()
    text = (line.strip() for line in path.read_text().splitlines())
    lines = [line for line in text if line and not line.startswith("#")]
    sections = read_body(piece, lines)
    for name, voices in sections.items():
        bars = len(voices["chords"].split("|"))
        lines = {
            voice: check_line(piece, name, voice, line, bars)
            for voice, line in voices.items()
            if voice != "chords"
        }
        piece.sections[name] = Section(bars, read_chords(voices["chords"], piece.bar), lines)
    return piece


def check_line(piece, section, voice, line, bars):
    """Split a voice's line into its bars; refuse one that does not fit."""
    if voice not in piece.voices:
        raise SourceError(f"section {section}: no voice {voice}")
    parts = [part.strip() for part in line.split("|")]
    if all(part.startswith("*") for part in parts) and bars % len(parts) == 0:
        parts *= bars // len(parts)
    if len(parts) != bars:
        raise SourceError(f"section {section}, {voice}: {len(parts)} bars, not {bars}")
    for number, part in enumerate(parts, 1):
        if part.startswith("*"):
            if part[1:] not in piece.figures:
                raise SourceError(f"section {section}, {voice}: no figure {part}")
            continue
        _, length = read_notes(part, 0, {})
        if abs(length - piece.bar) > 1e-6:
            raise SourceError(f"section {section}, {voice}, bar {number}: {length} quarters")
    return parts
