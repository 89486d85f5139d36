#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Prints what a running program costs the machine over 20 seconds: processor time in percent of a
core and wake-ups a second, by thread and in all, its memory (Pss) and how many threads it has. A
wake-up is a voluntary context switch: a thread that slept and was run again."""

import argparse
import contextlib
import time
from pathlib import Path

WATCHED_SECONDS = 20.0


def status_of(process):
    """The fields of a process or a thread, by its folder in /proc."""
    return dict(line.split(":", 1) for line in (process / "status").read_text().splitlines())


def threads_of(pid):
    """By thread: its name, its processor time in seconds, and how often it slept."""
    seen = {}
    for task in Path(f"/proc/{pid}/task").iterdir():
        with contextlib.suppress(FileNotFoundError, ProcessLookupError):
            status = status_of(task)
            ran = int((task / "schedstat").read_text().split()[0]) / 1e9
            seen[task.name] = status["Name"].strip(), ran, int(status["voluntary_ctxt_switches"])
    return seen


def proportional_megabytes(pid):
    lines = Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines()
    return next(int(line.split()[1]) for line in lines if line.startswith("Pss:")) / 1024


def measure_load(pid, label, seconds=WATCHED_SECONDS, by_thread=False):
    """Watches the process and prints one row of the table, and if asked for a row a thread."""
    before, start = threads_of(pid), time.monotonic()
    time.sleep(seconds)
    after, passed = threads_of(pid), time.monotonic() - start
    processor = wakes = 0.0
    for thread, (name, ran, slept) in sorted(after.items()):
        _, ran_before, slept_before = before.get(thread, (name, 0.0, 0))
        share, rate = 100 * (ran - ran_before) / passed, (slept - slept_before) / passed
        processor, wakes = processor + share, wakes + rate
        if by_thread:
            print(f"  {name:24} {share:6.2f} % {rate:7.1f} wake-ups a second")
    print(
        f"{label:24} {processor:6.2f} % {wakes:7.1f} wake-ups a second "
        f"{proportional_megabytes(pid):6.1f} MB {len(after):3d} threads",
        flush=True,
    )


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("pid", type=int)
    measure_load(parser.parse_args().pid, "in all", by_thread=True)
