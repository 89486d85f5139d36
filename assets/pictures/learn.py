# SPDX-License-Identifier: MIT
"""The how-to-play picture: the aim of the game and three panels that show one move.

Made of the sheet's own frames and the board's own cells.  The place of the
window's OK button, (400, 480) to (481, 505), stays calm.
"""
import functools

import numpy as np
from PIL import Image, ImageDraw

from pictures import board
from pictures import colour
from pictures import gem_sheet
from pictures import target
from pictures import painting as p

WIDTH, HEIGHT = 512, 511
AIM, AIM_BASELINE, AIM_SIZE = "The object is to match 3 of a kind", 38, 25.5
ROW_LEFT, ROW_TOP = 160, 52
PANELS = (130, 246, 362)  # top rows
PANEL_LEFT, PANEL_RIGHT, PANEL_HEIGHT = 14, 498, 108
CELL = 46  # side of a cell in a panel
CELLS_LEFT, CELLS_DROP = 28, 8
CELL_SAMPLES = 3
TEXT_LEFT, TEXT_SIZE, LINE = 234, 16.5, 22
TEXTS = (
    ("First, look for two pieces", "to exchange to match 3 in a", "row, up, down, right or left."),
    (
        "Click on one of the pieces,",
        "then on the other, or hold",
        "the button and drag to the",
        "other piece.",
    ),
    ("The pieces change place,", "the three in a row vanish", "and you score points!"),
)
ROUND, EMERALD, LOZENGE, TRILLION, MARQUISE, PEAR, STAR, HEART = range(8)
AIM_ROW = (HEART, HEART, HEART)
BEFORE = ((LOZENGE, STAR, HEART, ROUND), (HEART, HEART, EMERALD, PEAR))
AFTER = ((LOZENGE, STAR, EMERALD, ROUND), (HEART, HEART, HEART, PEAR))


class Page:
    """The canvas at one scale factor, with the sprites at hand."""

    def __init__(self, scratch, scale):
        self.scratch, self.scale = scratch, scale
        self.x, self.y = p.grid(WIDTH, HEIGHT, scale)
        self.canvas = board.ground(self.x, self.y * 0.9, board.clouds(self.x.shape, scale))

    def mask_of(self, points):
        """Coverage of a polygon given in logical pixels."""
        k = 4
        image = Image.new("L", (self.canvas.shape[1] * k, self.canvas.shape[0] * k))
        ImageDraw.Draw(image).polygon(
            [(x * self.scale * k, y * self.scale * k) for x, y in points], fill=255
        )
        return p.average(np.asarray(image, dtype=np.float64)[..., None], k)[..., 0] / 255

    def lay(self, picture, alpha, left, top):
        """Lays a small picture over the canvas at a logical place."""
        i, j = round(top * self.scale), round(left * self.scale)
        part = self.canvas[i : i + picture.shape[0], j : j + picture.shape[1]]
        p.blend(part, picture, alpha)

    def put_cells(self, left, top, columns, rows, side):
        """Real cells of the board, at another size."""
        zoom = self.scale * side / board.CELL * CELL_SAMPLES
        x, y = p.grid(columns * board.CELL, rows * board.CELL, zoom)
        cells = board.ground(x + 128, y + 128, board.clouds(x.shape, zoom))
        board.paint_cells(cells, x, y, columns, rows)
        small = p.average(cells, CELL_SAMPLES)
        x, y = p.grid(columns * side, rows * side, self.scale)
        distance = p.rounded_box(x, y, 0, 0, columns * side, rows * side, 9)
        self.lay(small, p.cover(distance, 0.5 / self.scale), left, top)

    def put_gem(self, kind, left, top, side, dim=1.0):
        """The gem at rest in a square of the given side."""
        picture, mask = _develop_rest(self.scratch, kind)
        pixels = round(side * self.scale)
        alpha = _resize(mask[..., None], pixels)
        colours = _resize(picture, pixels) / np.maximum(alpha, 1e-9)
        self.lay(colours * dim, alpha[..., 0], left, top)

    def put_target(self, left, top, side):
        """The target's still frame in a square of the given side."""
        paint, ring = target.paint_frame(0)
        pixels = round(side * self.scale)
        alpha = _resize(ring[..., None], pixels)
        self.lay(
            _resize(paint * ring[..., None], pixels) / np.maximum(alpha, 1e-9),
            alpha[..., 0],
            left,
            top,
        )

    def glow(self, cx, cy, reach, hue, strength):
        """A soft light behind things."""
        light = np.exp(-((self.x - cx) ** 2 + (self.y - cy) ** 2) / (2 * reach**2))
        self.canvas += (strength * light)[..., None] * colour.hex_linear(hue)

    def sparkle(self, cx, cy, ray):
        """A star of light over things."""
        star = p.glint(self.x - cx, self.y - cy, ray, 0.7, 1.6)
        self.canvas += (1.4 * star)[..., None]

    def write(self, text, left, baseline, size, paint):
        mask = p.text_mask(self.canvas.shape, self.scale, text, left, baseline, size)
        p.letter(self.canvas, self.scale, mask, paint, shadow=0.7)

    def shape(self, points, paint):
        p.letter(
            self.canvas,
            self.scale,
            self.mask_of(points),
            paint,
            shadow=0.9,
            spread=1.4,
            outline=colour.hex_linear("2a1206"),
        )


@functools.lru_cache(maxsize=gem_sheet.KINDS)
def _develop_rest(scratch, kind):
    """All samples of the sheet's rest frame of a kind."""
    return gem_sheet.develop(scratch, kind * gem_sheet.FRAMES)


def _resize(samples, pixels):
    """A square float picture averaged down to another side."""
    layers = [
        np.asarray(
            Image.fromarray(samples[..., i].astype(np.float32)).resize(
                (pixels, pixels), Image.Resampling.BOX
            ),
            dtype=np.float64,
        )
        for i in range(samples.shape[-1])
    ]
    return np.stack(layers, axis=-1)


def _arrow(x0, y0, x1, y1, width, double=False):
    """Outline of an arrow from one point to another."""
    length = np.hypot(x1 - x0, y1 - y0)
    ux, uy = (x1 - x0) / length, (y1 - y0) / length
    head, half, wing = width * 1.5, width / 2, width * 1.35
    tail = head if double else 0
    local = [
        (tail, half),
        (length - head, half),
        (length - head, wing),
        (length, 0),
        (length - head, -wing),
        (length - head, -half),
        (tail, -half),
    ]
    if double:
        local += [(tail, -wing), (0, 0), (tail, wing)]
    return [(x0 + a * ux - b * uy, y0 + a * uy + b * ux) for a, b in local]


def _pointer(x, y, size):
    """Outline of a mouse pointer whose tip is at (x, y)."""
    shape = ((0, 0), (0, 1), (0.23, 0.78), (0.39, 1.13), (0.54, 1.06), (0.39, 0.72), (0.70, 0.70))
    return [(x + a * size, y + b * size) for a, b in shape]


def _paint_panel(page, number, top):
    bottom = top + PANEL_HEIGHT
    distance = p.rounded_box(page.x, page.y, PANEL_LEFT, top, PANEL_RIGHT, bottom, 12)
    p.blend(page.canvas, colour.hex_linear("0b0c38"), 0.62 * p.cover(distance))
    rim = np.exp(-(((distance + 0.8) / 0.75) ** 2))
    p.blend(page.canvas, p.gold(page.y, top, bottom) * 0.7, 0.75 * rim)
    for i, line in enumerate(TEXTS[number]):
        first = top + PANEL_HEIGHT / 2 - (len(TEXTS[number]) - 1) * LINE / 2 + TEXT_SIZE * 0.36
        page.write(line, TEXT_LEFT, first + i * LINE, TEXT_SIZE, colour.hex_linear("eef1ff"))


def _paint_gems(page, top, kinds, bright, glowing=False):
    """A piece of a board; gems that are not in the list of bright cells are dimmed."""
    page.put_cells(CELLS_LEFT, top, 4, 2, CELL)
    for row, column in bright if glowing else ():
        page.glow(*_middle(top, row, column), 15, "ffc860", 0.75)
    for row in range(2):
        for column in range(4):
            shown = (row, column) in bright
            page.put_gem(
                kinds[row][column],
                CELLS_LEFT + column * CELL,
                top + row * CELL,
                CELL,
                1.0 if shown else 0.36,
            )


def _middle(top, row, column):
    return CELLS_LEFT + (column + 0.5) * CELL, top + (row + 0.5) * CELL


def _paint_panels(page):
    gold = p.gold(page.y * 0 + 0.4, 0, 1)
    tops = [top + CELLS_DROP for top in PANELS]
    for number, top in enumerate(PANELS):
        _paint_panel(page, number, top)
    _paint_gems(page, tops[0], BEFORE, ((0, 2), (1, 2), (1, 0), (1, 1)))
    x, y = _middle(tops[0], 0, 2)
    page.shape(_arrow(x, y + 10, x, y + CELL - 10, 7, double=True), gold)
    _paint_gems(page, tops[1], BEFORE, ((0, 2), (1, 2)))
    page.put_target(CELLS_LEFT + 2 * CELL, tops[1], CELL)
    x, y = _middle(tops[1], 0, 2)
    page.shape(_arrow(x, y + 12, x, y + CELL + 2, 7), gold)
    page.shape(_pointer(x + 4, y - 2, 21), (1, 1, 1))
    _paint_gems(page, tops[2], AFTER, ((1, 0), (1, 1), (1, 2)), glowing=True)
    x, y = _middle(tops[2], 0, 2)
    page.shape(_arrow(x + 8, y + 12, x + 8, y + CELL - 8, 5), gold)
    page.shape(_arrow(x - 8, y + CELL - 12, x - 8, y + 8, 5), gold)
    for column in range(3):
        x, y = _middle(tops[2], 1, column)
        page.sparkle(x + 12, y - 13, 15)
        page.sparkle(x - 14, y + 10, 10)


def paint_page(scratch, scale):
    """Linear light of the picture at scale 1 or 2."""
    page = Page(scratch, scale)
    left = (WIDTH - p.text_width(AIM, AIM_SIZE)) / 2
    page.write(
        AIM,
        left,
        AIM_BASELINE,
        AIM_SIZE,
        p.gold(page.y, AIM_BASELINE - AIM_SIZE * 0.74, AIM_BASELINE + 3),
    )
    page.put_cells(ROW_LEFT, ROW_TOP, 3, 1, 64)
    for i, kind in enumerate(AIM_ROW):
        page.glow(ROW_LEFT + 64 * i + 32, ROW_TOP + 32, 20, "ffc860", 0.30)
        page.put_gem(kind, ROW_LEFT + 64 * i, ROW_TOP, 64)
    _paint_panels(page)
    return page.canvas


def build(scratch, folder):
    """Writes the picture in both sizes, with the sheet's frames at rest."""
    gem_sheet.trace_at_rest(scratch)
    for scale, name in p.sizes("learn.png"):
        p.save(p.dithered_bytes(paint_page(scratch, scale), 60 + scale), folder / name)
