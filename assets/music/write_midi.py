# SPDX-License-Identifier: MIT
"""Writes a performance as a Standard MIDI File of type 1 for a General MIDI synthesizer.

The file holds one tempo: slowing down is written into the times of the notes.
GStreamer's MIDI reader takes a later tempo to hold from the very beginning, and
would leave a long silence where the music slows.
"""
import mido

TICKS = 480
DRUM_CHANNEL = 9
VOLUME, PAN, REVERB, ALL_NOTES_OFF = 7, 10, 91, 123
# The file goes on after the last note for as long as its reverberation lasts.
TAIL_S = 2.0


def deal_channels(piece):
    """Give each voice a channel of its own; drums take the tenth."""
    melodic = [number for number in range(16) if number != DRUM_CHANNEL]
    names = [name for name, voice in piece.voices.items() if not voice.drums]
    channels = dict(zip(names, melodic))
    return {name: channels.get(name, DRUM_CHANNEL) for name in piece.voices}


def count_ticks(piece, seconds):
    """Return a time as ticks at the piece's one tempo."""
    return round(seconds * piece.tempo / 60 * TICKS)


def make_head(piece):
    """Return the track of title, key, metre and tempo."""
    return [(0, mido.MetaMessage("track_name", name=piece.title)),
            (0, mido.MetaMessage("copyright", text="The Glimmerfall authors, MIT licence")),
            (0, mido.MetaMessage("key_signature", key=piece.key)),
            (0, mido.MetaMessage("time_signature", numerator=piece.beats,
                                 denominator=piece.beat_type)),
            (0, mido.MetaMessage("set_tempo", tempo=mido.bpm2tempo(piece.tempo)))]


def make_track(voice, channel, spans, end):
    """Return the events of one voice; spans are (start tick, end tick, note)."""
    events = [(0, mido.MetaMessage("track_name", name=voice.name)),
              (0, mido.Message("program_change", channel=channel, program=voice.program))]
    for control, value in ((VOLUME, voice.volume), (PAN, voice.pan), (REVERB, voice.reverb)):
        events.append((0, mido.Message("control_change", channel=channel, control=control,
                                       value=value)))
    for start, stop, note in spans:
        events.append((start, mido.Message("note_on", channel=channel, note=note.pitch,
                                           velocity=note.velocity)))
        events.append((stop, mido.Message("note_off", channel=channel, note=note.pitch,
                                          velocity=0)))
    events.append((end, mido.Message("control_change", channel=channel,
                                     control=ALL_NOTES_OFF, value=0)))
    return events


def order_track(events):
    """Turn absolute times into a track; at one tick, notes end before others start."""
    track, now = mido.MidiTrack(), 0
    for at, message in sorted(events, key=lambda e: (e[0], e[1].type == "note_on")):
        track.append(message.copy(time=at - now))
        now = at
    track.append(mido.MetaMessage("end_of_track", time=0))
    return track


def write_midi(piece, performance, path):
    """Write the file at path."""
    spans = []
    for note in performance.notes:
        start = count_ticks(piece, performance.to_seconds(note.start))
        stop = count_ticks(piece, performance.to_seconds(note.start + note.length))
        spans.append((start, max(start + 1, stop), note))
    end = max(stop for _, stop, _ in spans) + count_ticks(piece, TAIL_S)
    channels = deal_channels(piece)
    song = mido.MidiFile(type=1, ticks_per_beat=TICKS)
    song.tracks.append(order_track(make_head(piece)))
    for name, voice in piece.voices.items():
        played = [span for span in spans if span[2].voice is voice]
        if played:
            song.tracks.append(order_track(make_track(voice, channels[name], played, end)))
    song.save(path)
