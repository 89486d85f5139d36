# SPDX-License-Identifier: MIT
"""The game's icon in six sizes, with smooth transparency around the gems."""
import concurrent.futures

import numpy as np

from pictures import colour
from pictures import developing
from pictures import painting as p
from pictures import tracer

SIDE = 768  # a multiple of all sizes
SMALL, LARGE = (16, 32), (48, 64, 128, 256)


def trace_motif(scratch, company):
    """Renders the small motif (company 0) or the large one (1) into the scratch folder."""
    for number, name in enumerate(("icon", "icon_mask")):
        declares = {"Pass": number, "Company": company}
        tracer.trace(scratch, "icon.pov", f"{name}{company}", (SIDE, SIDE), declares)


def make_icon(scratch, company, side):
    """8-bit RGBA of one size."""
    light = tracer.read_traced(scratch, f"icon{company}")
    passes = tracer.read_traced(scratch, f"icon_mask{company}")
    picture, mask = developing.develop(light, passes, SIDE / 64, glints=1)
    alpha = p.average(mask[..., None], SIDE // side)
    pixels = p.average(picture, SIDE // side) / np.maximum(alpha, 1e-9)
    result = np.concatenate(
        [colour.to_bytes(pixels), np.floor(alpha * 255 + 0.5).astype(np.uint8)], axis=-1
    )
    result[alpha[..., 0] == 0] = 0
    return result


def build(scratch, folder):
    """Traces both motifs with two processes and writes all sizes."""
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        list(pool.map(lambda company: trace_motif(scratch, company), (0, 1)))
    for company, sides in enumerate((SMALL, LARGE)):
        for side in sides:
            p.save(make_icon(scratch, company, side), folder / f"icon{side}.png")
