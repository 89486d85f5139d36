# SPDX-License-Identifier: MIT
"""Writes a performance as a Csound score for music.orc."""

# The room goes on sounding for this long after the last note.
TAIL_S = 3.5
FULL = 127


def write_score(piece, performance, path):
    """Write the score at path: one line a note, times in seconds, then the room."""
    lines, last = [], 0.0
    for note in performance.notes:
        voice = note.voice
        start = performance.to_seconds(note.start)
        length = performance.to_seconds(note.start + note.length) - start
        loud = (note.velocity / FULL) ** 2 * (voice.volume / 100) ** 2
        lines.append(f"i{voice.instrument} {start:.4f} {length:.4f} {note.pitch} {loud:.5f} "
                     f"{voice.pan / FULL:.3f} {voice.reverb / FULL:.3f} {note.velocity / FULL:.3f}")
        last = max(last, start + length)
    lines.append(f"i99 0 {last + TAIL_S:.4f} {piece.gain:.2f}")
    path.write_text("\n".join(lines) + "\ne\n")
