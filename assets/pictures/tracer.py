# SPDX-License-Identifier: MIT
"""Runs the ray tracer on the scenes of this folder and reads what it wrote.

Used by every picture that shows a gem.  The tracer writes 16-bit portable
pixmaps in linear light, whose pixels are the same on every run.
"""
import re
import subprocess
import threading
from pathlib import Path

import numpy as np

from pictures import gem_shapes

HERE = Path(__file__).resolve().parent
TRACER = "povray"
FRAMES = 16  # of one turn of a gem
LAST_FRAME = 127  # of gems.pov: eight kinds by FRAMES steps
_mesh_lock = threading.Lock()


def write_scene_meshes(scratch):
    """Writes the mesh file into the scratch folder unless it is there already."""
    path = scratch / "meshes.inc"
    with _mesh_lock:
        if not path.exists():
            gem_shapes.write_meshes(path)


def trace(scratch, scene, name, size, declares, frames=None):
    """Renders a scene to <name>.ppm, or <name><frame>.ppm for a (first, last) pair of frames.

    Raises RuntimeError with the tracer's last words if it fails.
    """
    write_scene_meshes(scratch)
    width, height = size
    command = [
        *(TRACER, HERE / scene, f"+W{width}", f"+H{height}", f"+O{scratch / name}.ppm", "+FP16"),
        *("File_Gamma=1.0", "-D", "-A", f"+L{HERE}", f"+L{scratch}", "+WT1"),
        *(f"Declare={key}={value}" for key, value in declares.items()),
    ]
    if frames:
        command += ["+KFI0", f"+KFF{LAST_FRAME}", f"+SF{frames[0]}", f"+EF{frames[1]}"]
    result = subprocess.run(command, capture_output=True, text=True, check=False, cwd=scratch)
    if result.returncode:
        raise RuntimeError(f"{TRACER} failed on {scene}:\n{result.stderr[-1500:]}")


def read_traced(scratch, name):
    """Linear RGB, float64, of a picture that trace() wrote."""
    data = (scratch / f"{name}.ppm").read_bytes()
    header = re.sub(rb"#[^\n]*\n", b"", data[:400]).split(None, 4)
    width, height = int(header[1]), int(header[2])
    pixels = np.frombuffer(data[-width * height * 6 :], dtype=">u2")
    return pixels.reshape(height, width, 3) / 65535.0
