# SPDX-License-Identifier: MIT
"""How the checks of the pictures and the sounds tell what they measured."""


def judge(criteria):
    """Prints each (what, value, least, most), or (what, value, wanted) where only one will do.
    Returns 1 if a value is out of its bounds, else 0."""
    count = failed = 0
    for what, value, *bounds in criteria:
        fits = bool(bounds[0] <= value <= bounds[-1])
        count, failed = count + 1, failed + (not fits)
        value, *bounds = (f"{v:.4g}" if isinstance(v, float) else v for v in (value, *bounds))
        bounds = " to ".join(map(str, bounds))
        print(f"{'ok' if fits else 'FAILED':6} {what:60} {value:>18}   {bounds}", flush=True)
    print(f"{count} checked, {failed} failed")
    return 1 if failed else 0
