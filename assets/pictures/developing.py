# SPDX-License-Identifier: MIT
"""Turns the two traced passes of a scene into a finished picture of gems.

Pass 0 is the light; pass 1 tells where there is gem, its facet edges and the plain
shade of its facets.  Lengths are in pixels of a gem about 60 pixels wide; the
argument pixel says how many samples such a pixel has.
"""
import numpy as np
from scipy import ndimage

from pictures import colour
from pictures import painting

EXPOSURE = 0.4  # of gem_materials.inc
GEM_BEHIND = 0.1  # red of pass 1 above which there is gem, behind edges too
SHADE_FLOOR, SHADE_GAIN = 0.58, 0.86
CLARITY, CLARITY_REACH = 0.55, 6.0  # strength and reach of the local contrast
EDGE_STRENGTH, EDGE_WHITE = 0.42, 0.45
CONTOUR, CONTOUR_WIDTH = 0.55, 2.4  # light left at the outline, pixels until it is full
KNEE = 0.62  # linear value above which highlights are compressed
GLINT_FROM, GLINT_FULL = 0.10, 0.55  # blurred highlight that starts and that fills a glint
GLINT_RAY, GLINT_WIDTH, GLINT_CORE = 9.0, 0.6, 1.2


def _sharpen_facets(picture, mask, pixel):
    """Raises the contrast between neighbour facets; what is far apart keeps its balance."""
    light = colour.luminance(picture) * mask
    reach = CLARITY_REACH * pixel
    around = ndimage.gaussian_filter(light, reach) / np.maximum(
        ndimage.gaussian_filter(mask.astype(float), reach), 1e-6
    )
    return picture * (np.clip(light / np.maximum(around, 1e-4), 0.2, 3) ** CLARITY)[..., None]


def _draw_edges(picture, edges):
    """Adds the lit facet edges, whitened in the hue of what they cross."""
    hue = picture / np.maximum(picture.max(axis=-1, keepdims=True), 1e-4)
    return picture + EDGE_STRENGTH * edges * (EDGE_WHITE + (1 - EDGE_WHITE) * hue)


def _add_glint(picture, mask, pixel):
    """A small star of light on the strongest highlight."""
    light = ndimage.gaussian_filter(np.clip(picture.min(axis=-1) - 0.35, 0, 1) * mask, pixel)
    row, column = np.unravel_index(np.argmax(light), light.shape)
    share = np.clip((light[row, column] - GLINT_FROM) / (GLINT_FULL - GLINT_FROM), 0, 1)
    dy = (np.arange(mask.shape[0]) - row)[:, None] / pixel
    dx = (np.arange(mask.shape[1]) - column)[None, :] / pixel
    star = painting.glint(dx, dy, GLINT_RAY, GLINT_WIDTH, GLINT_CORE)
    return picture + (2 * share * star)[..., None]


def _compress_highlights(linear):
    over = np.maximum(linear - KNEE, 0)
    return np.where(linear > KNEE, KNEE + (1 - KNEE) * (1 - np.exp(-over / (1 - KNEE))), linear)


def develop(light, passes, pixel, glints=0, fine=False):
    """Linear colour, black outside, and coverage (0 or 1) of all samples; at most one glint.

    Edges that lie over one another hide the gem behind them, a hole as small as a point. In a
    fine picture, whose gems are larger than 60 pixels, such holes would show and are closed.
    """
    red = passes[..., 0]
    mask = ndimage.binary_fill_holes(red > 0) if fine else red > GEM_BEHIND
    contour = np.clip(ndimage.distance_transform_edt(mask) / (pixel * CONTOUR_WIDTH), 0, 1)
    contour = contour[..., None]
    picture = _sharpen_facets(light / EXPOSURE, mask, pixel)
    picture = picture * (SHADE_FLOOR + SHADE_GAIN * passes[..., 2:3])
    picture = _draw_edges(picture, np.clip(passes[..., 1:2], 0, 1) * contour)
    if glints:
        picture = _add_glint(picture, mask, pixel)
    picture = _compress_highlights(picture * (CONTOUR + (1 - CONTOUR) * contour))
    return picture * mask[..., None], mask.astype(float)
