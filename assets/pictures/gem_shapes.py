# SPDX-License-Identifier: MIT
"""The eight cuts: outlines, facets and edges, written out as meshes for the ray tracer.

The gem sheet, the chooser picture and the icon all use these shapes.  A cell of the sheet is 2.38
units wide; y is up, z points away from the viewer, so that the crown of a gem has negative z.  An
outline is a function of t, 0 to 1 once round, whose values are points x + iy.
"""
import cmath
import math

import numpy as np

EDGE_RADIUS = 0.0125
SHARP_EDGE = 0.985  # cosine between neighbour facets above which no edge is drawn
SUBDIVISION = 3  # girdle points between two facet corners


def _clock(turn):
    """The point at a share of a turn on the unit circle, clockwise from the top."""
    return 1j * cmath.exp(-2j * cmath.pi * turn)


def _sides(corners, bulge=0.0):
    """Sides of equal shares of t, which swell by the share `bulge` of their length."""

    def curve(t):
        number, along = divmod(t % 1.0 * len(corners) + 1e-9, 1)
        start, end = (corners[(int(number) + i) % len(corners)] for i in (0, 1))
        return start + (end - start) * (along + 4j * bulge * along * (1 - along))

    return curve


def _lens(half_width, half_height):
    """Two circular arcs that meet in points at left and right, starting at the right one."""
    radius = (half_width**2 + half_height**2) / (2 * half_height)
    half_angle = math.asin(half_width / radius)

    def curve(t):
        angle = half_angle * (1 - 4 * (t % 0.5))
        arc = 1j * (radius * cmath.exp(-1j * angle) - radius + half_height)
        return arc.conjugate() if t % 1.0 < 0.5 else -arc.conjugate()

    return curve


def _drop(half_width, half_height):
    def curve(t):
        a = 2 * math.pi * t
        x = half_width * math.sin(a) * abs(math.sin(a / 2)) ** 1.25
        return complex(x, half_height * math.cos(a))

    return curve


def _heart(scale, lift):
    def curve(t):
        a = 2 * math.pi * t
        y = 13 * math.cos(a) - 5 * math.cos(2 * a) - 2 * math.cos(3 * a) - math.cos(4 * a)
        return scale * complex(16 * math.sin(a) ** 3, y) + lift * 1j

    return curve


def _octagon(width, height, cut):
    right = [complex(width - cut, height), complex(width, height - cut)]
    right += [point.conjugate() for point in reversed(right)]
    return right + [-point for point in right]


class Mesh:
    """Triangles in space, gathered face by face."""

    def __init__(self):
        self.faces = []

    def add(self, *points):
        """Adds a convex face as a fan from its first point."""
        for i in range(1, len(points) - 1):
            triangle = (points[0], points[i], points[i + 1])
            if np.linalg.norm(_cross(triangle)) > 2e-7:
                self.faces.append(triangle)

    def edges(self):
        """Sharp edges between two faces that do not lie in the girdle."""
        sides = {}
        for face in self.faces:
            normal = _normal(face)
            for i in range(3):
                ends = tuple(sorted((_rounded(face[i]), _rounded(face[(i + 1) % 3]))))
                sides.setdefault(ends, []).append(normal)
        return [
            ends
            for ends, normals in sides.items()
            if len(normals) == 2 and np.dot(*normals) < SHARP_EDGE and not _in_girdle(ends)
        ]


def _rounded(point):
    return tuple(round(c, 6) for c in point)


def _cross(face):
    a, b, c = np.array(face)
    return np.cross(b - a, c - a)


def _normal(face):
    """Unit normal that looks away from the gem's inside."""
    normal = _cross(face)
    outward = -1 if normal[2] * sum(p[2] for p in face) < 0 else 1
    return outward * normal / np.linalg.norm(normal)


def _in_girdle(ends):
    return all(abs(p[2]) < 0.06 for p in ends)


def _lift(point, z):
    return point.real, point.imag, z


def _scaled(curve, centre, scale, t, z):
    return _lift(centre + (curve(t) - centre) * scale, z)


def _add_girdle_band(mesh, front, back):
    for i in range(len(front)):
        j = (i + 1) % len(front)
        mesh.add(front[i], front[j], back[j], back[i])


def _add_halves(mesh, ring, girdle, count):
    """The small facets that run from each point of the ring to its piece of the girdle."""
    step = 2 * SUBDIVISION
    for i in range(count):
        for k in range(step):
            mesh.add(
                ring[i],
                girdle[(i * step + k) % len(girdle)],
                girdle[(i * step + k + 1) % len(girdle)],
            )


def cut_brilliant(
    curve,
    mains,
    centre=0j,
    table=0.54,
    bezel=0.80,
    crown=0.38,
    girdle=0.045,
    pavilion=0.62,
    lower=0.42,
):
    """A table, stars, kites and halves over any outline; a point at the back."""
    mesh = Mesh()
    spread = math.cos(math.pi / mains)
    along = (bezel * spread - table) / (1 - table)
    bezel_height = crown + (girdle - crown) * along
    lower_height = pavilion + (girdle - pavilion) * lower * spread
    count = mains * 2 * SUBDIVISION
    front = [_scaled(curve, centre, 1, k / count, -girdle) for k in range(count)]
    back = [_scaled(curve, centre, 1, k / count, girdle) for k in range(count)]
    tables = [_scaled(curve, centre, table, i / mains, -crown) for i in range(mains)]
    bezels = [_scaled(curve, centre, bezel, (i + 0.5) / mains, -bezel_height) for i in range(mains)]
    lowers = [_scaled(curve, centre, lower, (i + 0.5) / mains, lower_height) for i in range(mains)]
    culet, eye = _lift(centre, pavilion), _lift(centre, -crown)
    for i in range(mains):
        j = (i + 1) % mains
        mesh.add(eye, tables[i], tables[j])
        mesh.add(tables[i], tables[j], bezels[i])
        mesh.add(tables[i], bezels[i - 1], front[i * 2 * SUBDIVISION])
        mesh.add(tables[i], bezels[i], front[i * 2 * SUBDIVISION])
        mesh.add(culet, lowers[i - 1], back[i * 2 * SUBDIVISION])
        mesh.add(culet, lowers[i], back[i * 2 * SUBDIVISION])
    _add_halves(mesh, bezels, front, mains)
    _add_halves(mesh, lowers, back, mains)
    _add_girdle_band(mesh, front, back)
    return mesh


def _inset(points, distance):
    """The convex clockwise polygon moved inward by the distance."""
    result = []
    for before, point, after in zip(points[-1:] + points[:-1], points, points[1:] + points[:1]):
        come, go = ((b - a) / abs(b - a) for a, b in ((before, point), (point, after)))
        half_turn = (1 - (go / come).real) / (go / come).imag
        result.append(point + distance * come * (half_turn - 1j))
    return result


def cut_steps(points, crown_steps, pavilion_steps, girdle=0.045):
    """Parallel steps over a convex polygon; each step is (inset, height)."""
    mesh = Mesh()
    front, back = ([_lift(point, z) for point in points] for z in (-girdle, girdle))
    _add_girdle_band(mesh, front, back)
    for ring, steps, sign in ((front, crown_steps, -1), (back, pavilion_steps, 1)):
        for distance, height in steps:
            inner = [_lift(point, sign * height) for point in _inset(points, distance)]
            _add_girdle_band(mesh, ring, inner)
            ring = inner
        middle = tuple(np.mean(ring, axis=0))
        for i in range(len(ring)):
            mesh.add(middle, ring[i], ring[(i + 1) % len(ring)])
    return mesh


def cut_gems():
    """By name the meshes, in the order of the sheet's rows and of the arrays in
    gem_materials.inc."""
    triangle = [1.21 * _clock(i / 3) - 0.13j for i in range(3)]
    star = [(0.60 if i % 2 else 1.15) * _clock(i / 10) - 0.08j for i in range(10)]
    return {
        "round": cut_brilliant(lambda t: 1.06 * _clock(t), 8, table=0.53, bezel=0.82),
        "emerald": cut_steps(
            _octagon(0.73, 1.10, 0.33),
            ((0.17, 0.25), (0.33, 0.38)),
            ((0.18, 0.28), (0.37, 0.47), (0.54, 0.60)),
        ),
        "lozenge": cut_brilliant(
            _sides([1.1j, 1.1, -1.1j, -1.1]), 4, table=0.52, bezel=0.86, crown=0.40, lower=0.5
        ),
        "trillion": cut_brilliant(_sides(triangle, 0.125), 6, -0.13j, table=0.52, bezel=0.82),
        "marquise": cut_brilliant(
            _lens(1.11, 0.60), 6, table=0.52, bezel=0.80, crown=0.36, pavilion=0.5
        ),
        "pear": cut_brilliant(_drop(1.10, 1.08), 8, -0.32j, table=0.54, bezel=0.82),
        "star": cut_brilliant(
            _sides(star), 5, -0.08j, table=0.46, bezel=0.80, crown=0.40, lower=0.5, pavilion=0.5
        ),
        "heart": cut_brilliant(
            _heart(1.07 / 16.2, 0.13), 8, 0.12j, table=0.52, bezel=0.80, crown=0.38
        ),
    }


def _vector(point):
    return "<" + ",".join(f"{c:.6f}" for c in point) + ">"


def write_meshes(path):
    """Writes every cut as Gem_<name> and its edges as Edges_<name> for the ray tracer."""
    with open(path, "w", encoding="ascii") as out:
        for name, mesh in cut_gems().items():
            out.write(f"#declare Gem_{name} = mesh {{\n")
            for face in mesh.faces:
                out.write(f" triangle{{{','.join(_vector(p) for p in face)}}}\n")
            out.write(" inside_vector <0.013,0.997,0.02>\n}\n")
            out.write(f"#declare Edges_{name} = union {{\n")
            for a, b in sorted(mesh.edges()):
                out.write(f" cylinder{{{_vector(a)},{_vector(b)},{EDGE_RADIUS:g}}}\n")
            out.write("}\n")
