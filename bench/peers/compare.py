#!/usr/bin/env python3
"""The same wall on this library, on libmpv's render API and on GStreamer, in turns, idle and beside busy processes.

    bench/peers/compare.py FOLDER [--windows 1,4,9,16,64] [--rounds 2] [--seconds 4]

Needs a display and build/bench. Writes FOLDER/walls.csv (a line a run) and prints the medians as a table; plot.py draws
them. Every round measures each library once in each condition, so that what else the machine does meets all of them.
"""
import argparse
import collections
import contextlib
import csv
import itertools
import json
import pathlib
import statistics
import subprocess
import sys

BIN = pathlib.Path(__file__).resolve().parent.parent.parent / "build/bench/bin"
LIBRARIES = {"lumen_deck": "wall_bench", "libmpv": "mpv_wall", "GStreamer": "gstreamer_wall"}
BUSY_PROCESSES = {"idle": 0, "loaded": 9}
FRAMES_PER_SECOND = {1: 25, 4: 25, 9: 25, 16: 25, 64: 5}  # by windows: what two cores can decode
WALL = (704, 576)
FIGURES = ("cpuPerFrame", "shownShare", "threads", "memory", "start", "hiddenShare")
COLUMNS = ("load", "windows", "library", "round", *FIGURES)


@contextlib.contextmanager
def busy(processes):
    # Sessions of their own: where the kernel groups processes by session they count as users of their own.
    running = [subprocess.Popen([sys.executable, "-c", "while True: pass"]) for _ in range(processes)]
    try:
        yield
    finally:
        for process in running:
            process.kill()
            process.wait()


def measured(library, windows, seconds):
    """The figures of one run; None where the library does not come to an end with that many windows."""
    command = [BIN / LIBRARIES[library], "--windows", windows, "--fps", FRAMES_PER_SECOND[windows], "--seconds", seconds,
               "--width", WALL[0], "--height", WALL[1]]
    try:
        run = subprocess.run([str(word) for word in command], capture_output=True, text=True, timeout=300)
        return json.loads(run.stdout.splitlines()[-1])
    except (subprocess.TimeoutExpired, IndexError, ValueError):
        return None


def runs(arguments):
    for load, windows in itertools.product(BUSY_PROCESSES, arguments.windows):
        for number, library in itertools.product(range(arguments.rounds), LIBRARIES):
            with busy(BUSY_PROCESSES[load]):
                figures = measured(library, windows, arguments.seconds)
            if figures is None:
                print(f"{library}: no figures for {windows} windows, {load}", file=sys.stderr)
                continue
            yield {"load": load, "windows": windows, "library": library, "round": number,
                   **{name: figures[name] for name in FIGURES}}


def medians(rows):
    groups = collections.defaultdict(list)
    for row in rows:
        groups[row["load"], row["windows"], row["library"]].append(row)
    return {key: {name: statistics.median(row[name] for row in group) for name in FIGURES}
            for key, group in groups.items()}


def print_table(rows):
    print("| Load | Windows | Library | CPU a shown frame | Shown | Threads | Memory a window | All windows show after | Hidden |")
    print("|---|---|---|---|---|---|---|---|---|")
    for (load, windows, library), of in medians(rows).items():
        print(f"| {load} | {windows} | {library} | {of['cpuPerFrame']:.2f} ms | {100 * of['shownShare']:.1f} % "
              f"| {of['threads']:.0f} | {of['memory']:.1f} MB | {of['start']:.2f} s | {100 * of['hiddenShare']:.1f} % |")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--windows", type=lambda text: [int(word) for word in text.split(",")], default=[1, 4, 9, 16, 64])
    parser.add_argument("--rounds", type=int, default=2)
    parser.add_argument("--seconds", type=float, default=4)
    arguments = parser.parse_args()
    arguments.folder.mkdir(parents=True, exist_ok=True)
    rows = []
    with open(arguments.folder / "walls.csv", "w", newline="", encoding="utf-8") as file:
        writer = csv.DictWriter(file, COLUMNS, lineterminator="\n")
        writer.writeheader()
        for row in runs(arguments):
            rows.append(row)
            writer.writerow(row)
            file.flush()
    print_table(rows)


if __name__ == "__main__":
    main()
