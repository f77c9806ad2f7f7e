#!/usr/bin/env python3
"""Draws what compare.py has written: bench/peers/plot.py FOLDER/walls.csv PICTURE"""
import collections
import csv
import statistics
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402  (the backend is chosen first)

PANELS = (("idle", "cpuPerFrame", "CPU ms a shown frame, idle", 1),
          ("loaded", "cpuPerFrame", "CPU ms a shown frame, loaded", 1),
          ("idle", "shownShare", "shown, idle, %", 100),
          ("loaded", "shownShare", "shown, loaded, %", 100))


def lines_of(rows, load, figure):
    """library -> [(windows, median, least, most)]"""
    groups = collections.defaultdict(list)
    for row in rows:
        if row["load"] == load:
            groups[row["library"], int(row["windows"])].append(float(row[figure]))
    lines = collections.defaultdict(list)
    for (library, windows), found in sorted(groups.items()):
        lines[library].append((windows, statistics.median(found), min(found), max(found)))
    return lines


def draw(axes, rows, load, figure, title, scale):
    for library, points in lines_of(rows, load, figure).items():
        windows, middle, least, most = zip(*[(w, scale * m, scale * a, scale * b) for w, m, a, b in points])
        line, = axes.plot(windows, middle, marker="o", label=library)
        axes.fill_between(windows, least, most, alpha=0.2, color=line.get_color())
    axes.set_xscale("log", base=4)
    axes.set_xticks([1, 4, 9, 16, 64], ["1", "4", "9", "16", "64"])
    axes.set_ylim(bottom=0)
    axes.set_xlabel("windows")
    axes.set_title(title)
    axes.grid(alpha=0.3)


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        rows = list(csv.DictReader(file))
    figure, panels = plt.subplots(2, 2, figsize=(10, 7), layout="constrained")
    for axes, panel in zip(panels.flat, PANELS):
        draw(axes, rows, *panel)
    panels[0][0].legend()
    figure.savefig(sys.argv[2], dpi=90)


if __name__ == "__main__":
    main()
