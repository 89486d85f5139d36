# SPDX-License-Identifier: MIT
"""Performs a piece: lays the figures over the chords and plays like a person.

Loudness follows the metre, the line, the phrase and the level that the form asks
for; timing strays by a few milliseconds. The straying is drawn from the piece's
own seed, so that a piece is always performed the same way.
"""
import dataclasses
import hashlib
import math
import random

from music import piece as source

PHRASE_BARS = 4
METRE_ACCENTS = (7.0, 2.0, -4.0)  # first beat of a bar, other beats, between
PHRASE_ARCH = 5.0
CONTOUR = 0.35
MARKED = 14.0
VELOCITY_STRAY = 3.0
VELOCITY_RANGE = (12, 122)
SHORTEST = 0.05
DEGREES = {"C", *(str(degree) for degree in range(1, 17) if degree % 7 not in (4, 6))}
RETRIGGER_GAP = 0.02
SLOWING_BARS = 2
TEMPO_STEP = 0.5


@dataclasses.dataclass
class Note:
    """One sounding note; start and length in quarter notes."""

    voice: source.Voice
    start: float
    length: float
    pitch: int
    velocity: int


@dataclasses.dataclass
class Performance:
    """The notes in order of time, the tempo as (quarter, beats a minute), the end."""

    notes: list
    tempo: list
    end: float

    def collect_spans(self, voice):
        """Return a voice's notes as (start in seconds, length in seconds, note)."""
        spans = []
        for note in self.notes:
            if note.voice is voice:
                start = self.to_seconds(note.start)
                spans.append((start, self.to_seconds(note.start + note.length) - start, note))
        return spans

    def identify(self, piece):
        """Return a name that changes with whatever is heard of the performance."""
        heard = [piece.title, piece.hall]
        for voice in piece.voices.values():
            heard.append(dataclasses.astuple(voice))
            heard += [
                (round(start, 4), round(length, 4), note.pitch, note.velocity)
                for start, length, note in self.collect_spans(voice)
            ]
        return hashlib.sha256(repr(heard).encode()).hexdigest()[:16]

    def to_seconds(self, quarter):
        """Return the time of a place in the piece, in seconds from its start."""
        seconds = 0.0
        for (start, bpm), (end, _) in zip(self.tempo, self.tempo[1:] + [(math.inf, 0)]):
            if quarter <= start:
                break
            seconds += (min(quarter, end) - start) * 60 / bpm
        return seconds


def place_degree(degree, chord, voice):
    """Return the pitch of a chord degree: 1 root, 3, 5, 7, 8 octave, 9, 10 and so on."""
    octave, step = divmod(degree - 1, 7)
    if step == 1:
        octave, semitones = octave - 1, chord.tones[3]
    else:
        semitones = {0: 0, 2: chord.tones[0], 4: chord.tones[1], 6: chord.tones[2]}[step]
    base = chord.bass if voice.bass and step == 0 else chord.root
    return voice.low + (base - voice.low) % 12 + 12 * octave + semitones


def voice_chord(chord, voice, before):
    """Return a close voicing of the chord that moves little from the one before."""
    classes = sorted({chord.root, *((chord.root + tone) % 12 for tone in chord.tones[:3])})
    if chord.ninth:
        classes = sorted({*classes, (chord.root + 2) % 12} - {chord.root})
    choices = []
    for turn in range(len(classes)):
        pitches, floor = [], voice.low
        for place in range(len(classes)):
            wanted = classes[(turn + place) % len(classes)]
            floor += (wanted - floor) % 12
            pitches.append(floor)
        choices.append(tuple(pitches))
    middle = sum(before) / len(before) if before else voice.low + 7
    return min(choices, key=lambda pitches: abs(sum(pitches) / len(pitches) - middle))


def lay_figure(steps, chords, start, end, voice, before):
    """Lay a figure over one bar; the figure restarts with the bar."""
    events, at, place = [], start, 0
    while at < end - 1e-6:
        names, accent, count = steps[place % len(steps)]
        length = min(count * source.UNIT, end - at)
        chord = next(c for c in reversed(chords) if c.start <= at + 1e-6)
        if names:
            pitches = sound_step(names, chord, voice, before)
            until = min(chord.start + chord.length, end) if voice.ring else at + length
            events.append(source.Event(at, max(until - at, length), pitches, accent))
        at, place = at + length, place + 1
    return events


def sound_step(names, chord, voice, before):
    """Return the pitches of one step of a figure."""
    known = source.DRUMS if voice.drums else DEGREES
    strange = [name for name in names if name not in known]
    if strange:
        raise source.SourceError(f"{voice.name}: no step {' '.join(strange)} in a figure")
    if voice.drums:
        return tuple(source.DRUMS[name] for name in names)
    if names == ("C",):
        before[:] = voice_chord(chord, voice, before)
        return tuple(before)
    return tuple(place_degree(int(name), chord, voice) for name in names)


def join_ties(marked):
    """Merge tied notes of the same pitches into one event each."""
    events, tying = [], False
    for event, tied in marked:
        if tying and events and events[-1].pitches == event.pitches:
            events[-1].length += event.length
        else:
            events.append(event)
        tying = tied
    return events


def collect_line(piece, section, voice, parts):
    """Return all events of one voice in one section."""
    signature, marked, before = source.sign_key(piece.key), [], []
    for number, part in enumerate(parts):
        start = number * piece.bar
        if part.startswith("*"):
            laid = lay_figure(
                piece.figures[part[1:]], section.chords, start, start + piece.bar, voice, before
            )
            marked += [(event, False) for event in laid]
        else:
            marked += source.read_notes(part, start, signature)[0]
    return join_ties(marked)


def assign_lines(passage, section):
    """Return (voice that plays, line, transposition) after the form's moves."""
    moves = {line: (voice, int(shift or 0)) for line, voice, shift in passage.moved}
    taken = [(*moves.get(line, (line, 0)), parts) for line, parts in section.lines.items()]
    return [entry for entry in taken if entry[0] not in passage.without]


def swing(piece, quarter):
    """Move the second eighth of each quarter by the piece's swing."""
    whole, part = math.floor(quarter + 1e-9), quarter - math.floor(quarter + 1e-9)
    if part < 0.5:
        return whole + part * 2 * piece.swing
    return whole + piece.swing + (part - 0.5) * 2 * (1 - piece.swing)


def weigh_metre(piece, quarter):
    """Return the accent that the metre gives to a place in its bar."""
    within = quarter % piece.bar
    if within < 1e-6:
        return METRE_ACCENTS[0]
    return METRE_ACCENTS[1 if within % piece.pulse < 1e-6 else 2]


def shape_velocity(piece, passage, section, voice, event, mean, chance):
    """Return how hard an event is struck."""
    length = section.bars * piece.bar
    here = event.start / length
    phrase = PHRASE_BARS * piece.bar
    value = voice.velocity + weigh_metre(piece, event.start) + MARKED * event.accent
    value += PHRASE_ARCH * (math.sin(math.pi * (event.start % phrase) / phrase) - 0.5)
    if not voice.drums:
        value += CONTOUR * (event.pitches[-1] - mean)
    value *= (passage.level[0] + (passage.level[1] - passage.level[0]) * here) / 100
    value += chance.gauss(0, VELOCITY_STRAY)
    return max(VELOCITY_RANGE[0], min(VELOCITY_RANGE[1], round(value)))


def perform_line(piece, passage, section, voice, parts, shift, offset, chance):
    """Perform one voice of one passage."""
    events = collect_line(piece, section, voice, parts)
    if not events:
        return []
    mean = sum(event.pitches[-1] for event in events) / len(events)
    quarters_per_ms = piece.tempo / 60000
    notes = []
    for event in events:
        velocity = shape_velocity(piece, passage, section, voice, event, mean, chance)
        start = offset + swing(piece, event.start)
        end = offset + swing(piece, event.start + event.length)
        start += max(-2.5, min(2.5, chance.gauss(0, 1))) * voice.loose * quarters_per_ms
        length = max(SHORTEST, (end - start) * voice.hold) + voice.after * piece.tempo / 60
        for place, pitch in enumerate(sorted(event.pitches)):
            late = place * voice.roll * quarters_per_ms
            notes.append(
                Note(
                    voice,
                    max(0.0, start + late),
                    max(SHORTEST, length - late),
                    pitch + shift,
                    velocity,
                )
            )
    return notes


def map_tempo(piece, passage, section, offset):
    """Return the tempo steps of one passage, slowing at its end if asked to."""
    bpm = piece.tempo * passage.tempo
    steps = [(offset, bpm)]
    if passage.slow < 1:
        length = SLOWING_BARS * piece.bar
        first = offset + section.bars * piece.bar - length
        count = round(length / TEMPO_STEP)
        for number in range(count):
            share = ((number + 1) / count) ** 1.5
            steps.append((first + number * TEMPO_STEP, bpm * (1 - (1 - passage.slow) * share)))
    return steps


def part_repeats(notes):
    """Shorten a note that would still sound when its pitch is struck again."""
    sounding, kept = {}, []
    for note in sorted(notes, key=lambda n: (n.start, n.voice.name, n.pitch)):
        earlier = sounding.get((note.voice.name, note.pitch))
        if earlier and note.start - earlier.start < SHORTEST:
            continue
        if earlier and earlier.start + earlier.length > note.start - RETRIGGER_GAP:
            earlier.length = max(0.01, note.start - RETRIGGER_GAP - earlier.start)
        sounding[(note.voice.name, note.pitch)] = note
        kept.append(note)
    return kept


def check_key(piece, notes):
    """Refuse a note that is neither in the key nor among the accidentals."""
    allowed = {source.read_pitch(name, {}) % 12 for name in piece.accidentals}
    allowed |= {source.read_pitch(name, source.sign_key(piece.key)) % 12 for name in "CDEFGAB"}
    for note in notes:
        if not note.voice.drums and note.pitch % 12 not in allowed:
            raise source.SourceError(f"{note.voice.name}: pitch {note.pitch} is off the key")


def perform_piece(piece):
    """Perform the whole form of a piece."""
    chance, notes, tempo, offset = random.Random(piece.seed), [], [], 0.0
    for passage in piece.form:
        section = piece.sections[passage.section]
        tempo += map_tempo(piece, passage, section, offset)
        for name, shift, parts in assign_lines(passage, section):
            notes += perform_line(
                piece, passage, section, piece.voices[name], parts, shift, offset, chance
            )
        offset += section.bars * piece.bar
    check_key(piece, notes)
    return Performance(part_repeats(notes), tempo, offset)
