#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""Measures tidel beside other readers, as whole processes on the same feeds.

200 feeds show their newest 50 items of 1,300 characters each. A small archive has only these, a big one has what the
feeds have published before. The number of stored messages is compared after each step."""

import argparse
import json
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

import process
import programs

FEEDS = 200
SHOWN = 50
NEW = 5
WORDS = ("lasum", "kelwim")


class Feeds:
    """The files of the feeds, which all programs read."""

    def __init__(self, folder):
        self.folder = folder
        self.published = 0

    def publish(self, items, shown=SHOWN):
        generator = pathlib.Path(__file__).parents[2] / "tests/data/generate-feeds.py"
        subprocess.run([sys.executable, generator, "--feeds", str(FEEDS), "--items", str(items), "--newest",
                        str(shown), "--size", "1300", self.folder], check=True)
        self.published = items
        # tidel does not trust the time of a file that was just written, and reads it once more.
        time.sleep(2.5)


class Measurement:
    """What was measured: the costs of each step for each program."""

    def __init__(self):
        self.costs = {}

    def step(self, step, program, action, expected):
        answer = action()
        stored = program.count()
        if stored != expected:
            raise SystemExit(f"{program.name}: {stored} messages after \"{step}\" instead of {expected}\n"
                             f"{answer.text[-2000:]}")
        self.costs.setdefault(step, {}).setdefault(program.name, []).append(answer.cost)

    def result(self):
        return {step: {name: vars(process.median(costs)) for name, costs in by_name.items()}
                for step, by_name in self.costs.items()}


def measure_small(measurement, work, kinds, round_number):
    feeds = Feeds(work / "feeds")
    feeds.publish(SHOWN)
    readers = [kind(work / f"small-{round_number}" / kind.__name__, feeds.folder) for kind in kinds]
    for reader in readers:
        measurement.step("import", reader, reader.first, FEEDS * SHOWN)
    for reader in readers:
        measurement.step("unchanged", reader, reader.refresh, FEEDS * SHOWN)
    feeds.publish(SHOWN + NEW)
    for reader in readers:
        measurement.step("new", reader, reader.refresh, FEEDS * (SHOWN + NEW))


def measure_big(measurement, work, kinds, messages, rounds):
    feeds = Feeds(work / "feeds")
    published = messages // FEEDS
    feeds.publish(published, shown=published)
    readers = [kind(work / f"big-{messages}" / kind.__name__, feeds.folder) for kind in kinds]
    for reader in readers:
        measurement.step("big import", reader, reader.first, messages)
    feeds.publish(published)
    for reader in readers:
        reader.refresh()
    for _ in range(rounds):
        for reader in readers:
            measurement.step("big unchanged", reader, reader.refresh, FEEDS * published)
            measurement.step("big channels", reader, reader.channels, FEEDS * published)
            if hasattr(reader, "search"):
                measurement.step("big search", reader, lambda: reader.search(WORDS), FEEDS * published)
        published += NEW
        feeds.publish(published)
        for reader in readers:
            measurement.step("big new", reader, reader.refresh, FEEDS * published)
    return {reader.name: reader.size() / FEEDS / published for reader in readers}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--tidel", required=True, help="the program")
    parser.add_argument("--big", type=int, default=100000, help="messages of the big archive (%(default)s)")
    parser.add_argument("--rounds", type=int, default=2, help="how often each step is measured (%(default)s)")
    parser.add_argument("--only", nargs="*", help="names of the programs; all installed ones by default")
    parser.add_argument("--output", type=pathlib.Path, help="a file for the figures, as JSON")
    options = parser.parse_args()

    programs.Tidel.executable = options.tidel
    kinds = [kind for kind in programs.installed() if not options.only or kind.name in options.only]
    measurement = Measurement()
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        for round_number in range(options.rounds):
            measure_small(measurement, work, kinds, round_number)
            shutil.rmtree(work / f"small-{round_number}")
        sizes = measure_big(measurement, work, kinds, options.big, options.rounds) if options.big else {}
    result = {"steps": measurement.result(), "bytes per message": sizes}
    text = json.dumps(result, indent=1)
    if options.output:
        options.output.write_text(text)
    else:
        print(text)


main()
