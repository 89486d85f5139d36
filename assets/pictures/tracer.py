# SPDX-License-Identifier: MIT
"""Runs the ray tracer on the scenes of this folder and reads what it wrote.

Used by every picture that shows a gem.  The tracer writes 16-bit portable
pixmaps in linear light, whose pixels are the same on every run.
"""
import os
import re
import subprocess
import threading

import numpy as np

import gem_shapes

HERE = os.path.dirname(os.path.abspath(__file__))
TRACER = 'povray'
FRAMES = 16                 # of one turn of a gem
LAST_FRAME = 127            # of gems.pov: eight kinds by FRAMES steps
_mesh_lock = threading.Lock()


def write_scene_meshes(scratch):
    """Writes the mesh file into the scratch folder unless it is there already."""
    path = os.path.join(scratch, 'meshes.inc')
    with _mesh_lock:
        if not os.path.exists(path):
            gem_shapes.write_meshes(path)


def trace(scratch, scene, name, size, declares, frames=None):
    """Renders a scene to <name>.ppm, or <name><frame>.ppm for a (first, last) pair of frames.

    Raises RuntimeError with the tracer's last words if it fails.
    """
    scratch = os.path.abspath(scratch)
    write_scene_meshes(scratch)
    command = [TRACER, os.path.join(HERE, scene), '+W%d' % size[0], '+H%d' % size[1],
               '+O' + os.path.join(scratch, name + '.ppm'), '+FP16', 'File_Gamma=1.0',
               '-D', '-A', '+L' + HERE, '+L' + scratch, '+WT1']
    command += ['Declare=%s=%s' % pair for pair in declares]
    if frames:
        command += ['+KFI0', '+KFF%d' % LAST_FRAME,
                    '+SF%d' % frames[0], '+EF%d' % frames[1]]
    result = subprocess.run(command, capture_output=True, text=True, check=False, cwd=scratch)
    if result.returncode:
        raise RuntimeError('%s failed on %s:\n%s' % (TRACER, scene, result.stderr[-1500:]))


def read_traced(scratch, name):
    """Linear RGB, float64, of a picture that trace() wrote."""
    with open(os.path.join(scratch, name + '.ppm'), 'rb') as source:
        data = source.read()
    header = re.sub(rb'#[^\n]*\n', b'', data[:400]).split(None, 4)
    width, height = int(header[1]), int(header[2])
    pixels = np.frombuffer(data[-width * height * 6:], dtype='>u2')
    return pixels.reshape(height, width, 3) / 65535.0
