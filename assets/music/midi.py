# SPDX-License-Identifier: MIT
"""Writes one voice of a performance as a Standard MIDI File for a General MIDI synthesizer."""
import mido
import numpy as np

TICKS = 480
TEMPO = 120  # the performance's times are in seconds already, so any tempo will do
DRUM_CHANNEL = 9
EXPRESSION = 11
SWELL_STEPS = 12
# The expression of a swelling voice at shares of a note: it opens, and then closes a little.
SWELL = ((0, 0.4, 1), (88, 127, 102))
SHORTEST_SWELL_S = 0.4
STEADY_EXPRESSION = 114


def count_ticks(seconds):
    """Return a time as ticks."""
    return round(seconds * TEMPO / 60 * TICKS)


def swell(start, length):
    """Return (seconds, expression) of one note of a swelling voice."""
    if length < SHORTEST_SWELL_S:
        return [(start, STEADY_EXPRESSION)]
    shares = np.linspace(0, 1, SWELL_STEPS + 1)
    return [(start + length * share, round(np.interp(share, *SWELL))) for share in shares]


def write_voice(voice, spans, path):
    """Write the notes of a voice; spans are (start in seconds, length in seconds, note)."""
    channel = DRUM_CHANNEL if voice.drums else 0
    events = []
    for start, length, note in spans:
        first, last = count_ticks(start), count_ticks(start + length)
        strike = {"channel": channel, "note": note.pitch}
        events.append((first, 2, mido.Message("note_on", velocity=note.velocity, **strike)))
        events.append((max(first + 1, last), 0, mido.Message("note_off", **strike)))
        for at, value in swell(start, length) if voice.swell else ():
            change = mido.Message("control_change", control=EXPRESSION, value=value)
            events.append((count_ticks(at), 1, change))
    song = mido.MidiFile(type=0, ticks_per_beat=TICKS)
    track = mido.MidiTrack()
    track.append(mido.MetaMessage("set_tempo", tempo=mido.bpm2tempo(TEMPO)))
    track.append(mido.Message("program_change", channel=channel, program=voice.program))
    now = 0
    # At one tick notes end, then the expression changes, then notes begin.
    for at, _, message in sorted(events, key=lambda event: event[:2]):
        track.append(message.copy(time=at - now))
        now = at
    song.tracks.append(track)
    song.save(path)
