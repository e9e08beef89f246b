#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""usage: report.py READERS.json STORE.json DOCUMENT

Writes the figures of readers/measure.py and of storebenchmark into DOCUMENT, between two marks."""

import datetime
import json
import os
import pathlib
import platform
import re
import sys

BEGIN, END = "<!-- figures: ./dev bench writes them -->\n", "<!-- end of the figures -->\n"
OTHER = "newsboat"
PLAIN = "SQLite with full text"
STEPS = {
    "import": "import 10,000",
    "unchanged": "unchanged",
    "new": "1,000 new",
    "big import": "import 100,000",
    "big unchanged": "unchanged, big",
    "big new": "1,000 new, big",
    "big channels": "start and list channels, big",
    "big search": "first search after a refresh, big",
}


def table(header, rows):
    lines = [header, ["---"] * len(header), *rows]
    return "".join("| " + " | ".join(line) + " |\n" for line in lines) + "\n"


def machine():
    model = re.search(r"model name\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text())
    memory = int(re.search(r"MemTotal:\s*(\d+)", pathlib.Path("/proc/meminfo").read_text())[1]) / 1024 ** 2
    name = model[1] if model else platform.machine()
    return (f"{datetime.date.today()}, {name}, {os.cpu_count()} cores, {memory:.0f} GiB, load at the end "
            f"{os.getloadavg()[0]:.1f}.\n\n")


def readers_tables(steps, sizes):
    names = list(steps["import"])
    shown = {step: label for step, label in STEPS.items() if step in steps}
    text = "Wall seconds, and CPU seconds in parentheses:\n\n"
    text += table(["step", *names], [
        [label, *(f"{steps[step][name]['wall']:.3f} ({steps[step][name]['cpu']:.3f})" if name in steps[step] else ""
                  for name in names)] for step, label in shown.items()])
    text += "Memory of the largest process in MiB, and the size of what is stored:\n\n"
    rows = [[label, *(f"{steps[step][name]['peak']:.0f}" if name in steps[step] else "" for name in names)]
            for step, label in shown.items()]
    rows.append(["bytes for each message", *(f"{sizes[name]:.0f}" if name in sizes else "" for name in names)])
    return text + table(["step", *names], rows)


def targets_table(steps, sizes):
    def ratio(step, figure, base, base_step=None):
        return steps[step]["Tidel"][figure] / steps[base_step or step][base][figure]

    rows = []

    def add(label, target, value, unit=""):
        rows.append([label, f"{target:g}{unit}", f"{value:.3g}{unit}", "yes" if value <= target else "**no**"])

    if OTHER in steps["import"]:
        add(f"import, wall, of {OTHER}'s", 0.5, ratio("import", "wall", OTHER))
        add(f"import, CPU, of {OTHER}'s", 0.85, ratio("import", "cpu", OTHER))
        add(f"1,000 new, wall, of {OTHER}'s", 0.1, ratio("new", "wall", OTHER))
        add(f"unchanged, wall, of {OTHER}'s", 0.015, ratio("unchanged", "wall", OTHER))
    if "big new" in steps:
        add("1,000 new, big, of small", 1.25, ratio("big new", "wall", "Tidel", "new"))
        add("unchanged, big, of small", 1.25, ratio("big unchanged", "wall", "Tidel", "unchanged"))
        add("start and list channels", 0.1, steps["big channels"]["Tidel"]["wall"], " s")
        add("first search after a refresh", 0.05, steps["big search"]["Tidel"]["wall"], " s")
        add("store with index, of SQLite's with full text", 1.2, sizes["Tidel"] / sizes[PLAIN])
    add("largest memory", 60, max(steps[step]["Tidel"]["peak"] for step in steps), " MiB")
    return table(["figure", "target", "measured", "reached"], rows)


def store_table(benchmarks):
    """One row for each operation, with its figures at each number of stored messages."""
    figures = {}
    for each in benchmarks:
        name, *numbers = each["run_name"].split("/iterations")[0].rsplit("/", 1)
        if numbers and numbers[0].isdigit():
            figures.setdefault(name, {})[int(numbers[0])] = (each["real_time"], each["ratio"])
    sizes = sorted({size for by_size in figures.values() for size in by_size})
    rows = [[f"`{name}`", *(f"{by_size[size][0]:.2f} ({by_size[size][1]:.1f})" for size in sizes)]
            for name, by_size in figures.items()]
    return ("CPU milliseconds of a call, and in parentheses the ratio to bare SQLite, by the number of stored messages. "
            "A call is about 50 messages, reading about 1,000:\n\n" + table(["operation", *(f"{size:,}" for size in sizes)], rows))


def main():
    readers = json.loads(pathlib.Path(sys.argv[1]).read_text())
    store = json.loads(pathlib.Path(sys.argv[2]).read_text())
    document = pathlib.Path(sys.argv[3])
    figures = ("\n" + machine() + readers_tables(readers["steps"], readers["bytes per message"])
               + targets_table(readers["steps"], readers["bytes per message"]) + store_table(store["benchmarks"]))
    before, _, rest = document.read_text().partition(BEGIN)
    document.write_text(before + BEGIN + figures + END + rest.partition(END)[2])


main()
