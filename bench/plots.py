#!/usr/bin/env python3
"""Draws how cost grows with work: reads the JSON of bench_sections, writes an SVG a series.

  build/release/bench/bench_sections --benchmark_format=json \\
      --benchmark_filter='packets/|_sized/|_document/' > series.json
  bench/plots.py series.json docs/plots
"""

import json
import math
import sys
from pathlib import Path

# File, title, what the horizontal axis counts, the benchmarks with their names in the legend.
SERIES = [
    ("handlers", "A packet nobody asked for, beside handlers on other PIDs", "PIDs with a handler",
     {"unwanted_packets": "push"}),
    ("filters", "A packet of a stream with one PID filtered", "filters on the PID", {"filtered_packets": "push"}),
    ("sections", "A byte of a section", "section size in bytes",
     {"parse_sized": "parse", "check_sized": "CRC"}),
    ("documents", "An element of a document", "elements",
     {"load_document": "load from text", "save_document": "print as text", "walk_document": "get_item"}),
]
WIDTH, HEIGHT, LEFT, TOP, RIGHT, BOTTOM = 560, 320, 70, 40, 150, 50
COLOURS = ["#1b6ca8", "#b3541e", "#3b7d3b"]


def points(results, name):
    """(size, nanoseconds an item) of one benchmark, by size."""
    found = []
    for result in results:
        parts = result["name"].split("/")
        if parts[0] == name:
            found.append((int(parts[1]), 1e9 / result["items_per_second"]))
    return sorted(found)


def scale(values, low, high):
    """A logarithmic scale over whole powers of ten, and its ticks."""
    first = math.floor(math.log10(min(values)))
    last = max(math.ceil(math.log10(max(values))), first + 1)
    ticks = [10.0**power for power in range(first, last + 1)]
    return lambda value: low + (math.log10(value) - first) / (last - first) * (high - low), ticks


def figure(title, axis, lines):
    across, columns = scale([x for line in lines.values() for x, _ in line], LEFT, WIDTH - RIGHT)
    up, rows = scale([y for line in lines.values() for _, y in line], HEIGHT - BOTTOM, TOP)
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}"'
           ' font-family="sans-serif" font-size="12">',
           f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>',
           f'<text x="{LEFT}" y="22" font-size="14">{title}</text>']
    for tick in columns:
        out.append(f'<line x1="{across(tick):.1f}" y1="{TOP}" x2="{across(tick):.1f}" y2="{HEIGHT - BOTTOM}"'
                   ' stroke="#ddd"/>'
                   f'<text x="{across(tick):.1f}" y="{HEIGHT - BOTTOM + 16}" text-anchor="middle">{tick:g}</text>')
    for tick in rows:
        out.append(f'<line x1="{LEFT}" y1="{up(tick):.1f}" x2="{WIDTH - RIGHT}" y2="{up(tick):.1f}" stroke="#ddd"/>'
                   f'<text x="{LEFT - 6}" y="{up(tick) + 4:.1f}" text-anchor="end">{tick:g} ns</text>')
    out.append(f'<text x="{(LEFT + WIDTH - RIGHT) / 2}" y="{HEIGHT - 12}" text-anchor="middle">{axis}</text>')
    for (name, line), colour in zip(lines.items(), COLOURS):
        path = " ".join(f"{across(x):.1f},{up(y):.1f}" for x, y in line)
        x, y = line[-1]
        out.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>')
        out += [f'<circle cx="{across(a):.1f}" cy="{up(b):.1f}" r="3" fill="{colour}"/>' for a, b in line]
        out.append(f'<text x="{across(x) + 8:.1f}" y="{up(y) + 4:.1f}" fill="{colour}">{name}</text>')
    out.append("</svg>\n")
    return "\n".join(out)


def main():
    results = json.loads(Path(sys.argv[1]).read_text())["benchmarks"]
    folder = Path(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)
    for file, title, axis, names in SERIES:
        lines = {legend: points(results, name) for name, legend in names.items()}
        (folder / f"{file}.svg").write_text(figure(title, axis, lines))
        for legend, line in lines.items():
            base = line[0][1]
            print(f"{file}, {legend}: " + ", ".join(f"{x}: {y / base:.2f}" for x, y in line)
                  + f"  (1 is {base:.3g} ns)")


if __name__ == "__main__":
    main()
