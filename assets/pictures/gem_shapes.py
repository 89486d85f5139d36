# SPDX-License-Identifier: MIT
"""The eight cuts: outlines, facets and edges, written out as meshes for the ray tracer.

The gem sheet, the chooser picture and the icon all use these shapes.  A cell of
the sheet is 2 * CELL_HALF units wide; y is up, z points away from the viewer,
so that the crown of a gem has negative z.
"""
import math

CELL_HALF = 1.19
# In the order of the sheet's rows and of the arrays in gem_materials.inc.
NAMES = ("round", "emerald", "lozenge", "trillion", "marquise", "pear", "star", "heart")
EDGE_RADIUS = 0.0125
SHARP_EDGE = 0.985  # cosine between neighbour facets above which no edge is drawn
SUBDIVISION = 3  # girdle points between two facet corners


def _polygon(points):
    """Closed curve p(t) through the points, one equal share of t for each side."""
    count = len(points)

    def curve(t):
        at = (t % 1.0) * count
        i = min(int(at + 1e-9), count - 1)
        f = at - i
        (ax, ay), (bx, by) = points[i], points[(i + 1) % count]
        return ax + (bx - ax) * f, ay + (by - ay) * f

    return curve


def _circle(radius):
    return lambda t: (radius * math.sin(2 * math.pi * t), radius * math.cos(2 * math.pi * t))


def _bulged_triangle(radius, bulge, drop):
    """Equilateral triangle, point up, with sides that swell by the share bulge of their length."""
    corners = [
        (radius * math.sin(a), radius * math.cos(a)) for a in (0, 2 * math.pi / 3, 4 * math.pi / 3)
    ]

    def curve(t):
        at = (t % 1.0) * 3
        i = min(int(at + 1e-9), 2)
        f = at - i
        (ax, ay), (bx, by) = corners[i], corners[(i + 1) % 3]
        swell = bulge * 4 * f * (1 - f)
        return (
            ax + (bx - ax) * f - (by - ay) * swell,
            ay + (by - ay) * f + (bx - ax) * swell + drop,
        )

    return curve


def _lens(half_width, half_height):
    """Two circular arcs that meet in points at left and right, starting at the right one."""
    radius = (half_width**2 + half_height**2) / (2 * half_height)
    half_angle = math.asin(half_width / radius)

    def curve(t):
        t = t % 1.0
        f = t * 2 if t < 0.5 else (t - 0.5) * 2
        angle = half_angle * (1 - 2 * f)
        x, y = radius * math.sin(angle), radius * math.cos(angle) - radius + half_height
        return (x, -y) if t < 0.5 else (-x, y)

    return curve


def _drop(half_width, half_height):
    def curve(t):
        a = 2 * math.pi * t
        return (half_width * math.sin(a) * abs(math.sin(a / 2)) ** 1.25, half_height * math.cos(a))

    return curve


def _heart(scale, lift):
    def curve(t):
        a = 2 * math.pi * t
        x = 16 * math.sin(a) ** 3
        y = 13 * math.cos(a) - 5 * math.cos(2 * a) - 2 * math.cos(3 * a) - math.cos(4 * a)
        return x * scale, y * scale + lift

    return curve


def _star(outer, inner, drop):
    points = []
    for i in range(10):
        radius = inner if i % 2 else outer
        points.append(
            (radius * math.sin(math.pi * i / 5), radius * math.cos(math.pi * i / 5) + drop)
        )
    return _polygon(points)


def _octagon(half_width, half_height, cut):
    w, h = half_width, half_height
    return [
        (w - cut, h),
        (w, h - cut),
        (w, cut - h),
        (w - cut, -h),
        (cut - w, -h),
        (-w, cut - h),
        (-w, h - cut),
        (cut - w, h),
    ]


class Mesh:
    """Triangles in space, gathered face by face."""

    def __init__(self):
        self.faces = []

    def add(self, *points):
        """Adds a convex face as a fan from its first point."""
        for i in range(1, len(points) - 1):
            triangle = (points[0], points[i], points[i + 1])
            if _area(triangle) > 1e-7:
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
            if len(normals) == 2 and _dot(*normals) < SHARP_EDGE and not _in_girdle(ends)
        ]


def _rounded(point):
    return tuple(round(c, 6) for c in point)


def _cross(face):
    (a, b, c) = face
    u = [b[i] - a[i] for i in range(3)]
    v = [c[i] - a[i] for i in range(3)]
    return (u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0])


def _area(face):
    return math.sqrt(sum(c * c for c in _cross(face))) / 2


def _normal(face):
    """Unit normal that looks away from the gem's inside."""
    n = _cross(face)
    length = math.sqrt(sum(c * c for c in n))
    middle_z = sum(p[2] for p in face)
    sign = -1 if n[2] * middle_z < 0 else 1
    return tuple(sign * c / length for c in n)


def _dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def _in_girdle(ends):
    return all(abs(p[2]) < 0.06 for p in ends)


def _scaled(curve, centre, scale, t, z):
    x, y = curve(t)
    return (centre[0] + (x - centre[0]) * scale, centre[1] + (y - centre[1]) * scale, z)


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
    centre=(0.0, 0.0),
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
    culet, eye = (*centre, pavilion), (*centre, -crown)
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
    count = len(points)
    for i in range(count):
        lines = []
        for a, b in ((points[i - 1], points[i]), (points[i], points[(i + 1) % count])):
            ex, ey = b[0] - a[0], b[1] - a[1]
            length = math.hypot(ex, ey)
            nx, ny = ey / length, -ex / length
            lines.append((nx, ny, nx * a[0] + ny * a[1] + distance))
        (a1, b1, c1), (a2, b2, c2) = lines
        det = a1 * b2 - a2 * b1
        result.append(((c1 * b2 - c2 * b1) / det, (a1 * c2 - a2 * c1) / det))
    return result


def cut_steps(points, crown_steps, pavilion_steps, girdle=0.045):
    """Parallel steps over a convex polygon; each step is (inset, height)."""
    mesh = Mesh()
    front = [(x, y, -girdle) for x, y in points]
    back = [(x, y, girdle) for x, y in points]
    _add_girdle_band(mesh, front, back)
    for ring, steps, sign in ((front, crown_steps, -1), (back, pavilion_steps, 1)):
        for distance, height in steps:
            inner = [(x, y, sign * height) for x, y in _inset(points, distance)]
            _add_girdle_band(mesh, ring, inner)
            ring = inner
        middle = (
            sum(p[0] for p in ring) / len(ring),
            sum(p[1] for p in ring) / len(ring),
            ring[0][2],
        )
        for i in range(len(ring)):
            mesh.add(middle, ring[i], ring[(i + 1) % len(ring)])
    return mesh


def cut_gem(name):
    """The mesh of the named cut."""
    makers = {
        "round": lambda: cut_brilliant(_circle(1.06), 8, table=0.53, bezel=0.82),
        "emerald": lambda: cut_steps(
            _octagon(0.73, 1.10, 0.33),
            ((0.17, 0.25), (0.33, 0.38)),
            ((0.18, 0.28), (0.37, 0.47), (0.54, 0.60)),
        ),
        "lozenge": lambda: cut_brilliant(
            _polygon([(0, 1.1), (1.1, 0), (0, -1.1), (-1.1, 0)]),
            4,
            table=0.52,
            bezel=0.86,
            crown=0.40,
            lower=0.5,
        ),
        "trillion": lambda: cut_brilliant(
            _bulged_triangle(1.21, 0.125, -0.13), 6, (0, -0.13), table=0.52, bezel=0.82
        ),
        "marquise": lambda: cut_brilliant(
            _lens(1.11, 0.60), 6, table=0.52, bezel=0.80, crown=0.36, pavilion=0.5
        ),
        "pear": lambda: cut_brilliant(_drop(1.10, 1.08), 8, (0, -0.32), table=0.54, bezel=0.82),
        "star": lambda: cut_brilliant(
            _star(1.15, 0.60, -0.08),
            5,
            (0, -0.08),
            table=0.46,
            bezel=0.80,
            crown=0.40,
            lower=0.5,
            pavilion=0.5,
        ),
        "heart": lambda: cut_brilliant(
            _heart(1.07 / 16.2, 0.13), 8, (0, 0.12), table=0.52, bezel=0.80, crown=0.38
        ),
    }
    return makers[name]()


def _vector(point):
    return "<" + ",".join(f"{c:.6f}" for c in point) + ">"


def write_meshes(path):
    """Writes every cut as Gem_<name> and its edges as Edges_<name> for the ray tracer."""
    with open(path, "w", encoding="ascii") as out:
        for name in NAMES:
            mesh = cut_gem(name)
            out.write(f"#declare Gem_{name} = mesh {{\n")
            for face in mesh.faces:
                out.write(f" triangle{{{','.join(_vector(p) for p in face)}}}\n")
            out.write(" inside_vector <0.013,0.997,0.02>\n}\n")
            out.write(f"#declare Edges_{name} = union {{\n")
            for a, b in sorted(mesh.edges()):
                out.write(f" cylinder{{{_vector(a)},{_vector(b)},{EDGE_RADIUS:g}}}\n")
            out.write("}\n")
