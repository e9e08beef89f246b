#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""Tries what the archive survives, with the real program in throw-away homes."""
import argparse
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
from collections import namedtuple

from findings import Findings
from home import Home
from interruptions import Interruptions, at_change, at_random_time, with_full_disk
from payloads import Payloads
from powercuts import PowerCuts
from scenes import Scenes
from together import Together

TESTS = pathlib.Path(__file__).resolve().parent.parent

# The minutes that programs run together in a short run.
SHORT = 0.15

# `make` returns an object that runs one case; `many` cases are tried at length, `few` otherwise.
Trial = namedtuple("Trial", "what make many few")


def interruptions(choose):
    return lambda scenes, options: Interruptions(scenes, choose)


TRIALS = {
    "kills": Trial("kills at random times", interruptions(at_random_time), 300, 20),
    "changes": Trial("kills at chosen system calls", interruptions(at_change), 300, 20),
    "powercuts": Trial("power cuts", PowerCuts, 400, 20),
    "fulldisks": Trial("full disks", interruptions(with_full_disk), 100, 20),
    "payloads": Trial("hostile texts", Payloads, 233, 8),
    "together": Trial("programs at once", Together, 1, 1),
}


def start_server(folder):
    server = subprocess.Popen([sys.executable, TESTS / "server/feedserver.py", folder], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, text=True)
    return server, f"http://127.0.0.1:{server.stdout.readline().strip()}"


def try_all(name, options, scenes, keep):
    """Runs a trial, and returns True if it found nothing."""
    trial = TRIALS[name]
    findings = Findings(name, options.seed, keep)
    made = trial.make(scenes, options)
    count = trial.few if options.short else options.count or trial.many
    for case in [options.case] if options.case is not None else range(count):
        made.run(case, random.Random(f"{options.seed} {name} {case}"), findings)
    print(findings.summary(trial.what), flush=True)
    return not findings.counts


def options():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--tidel", required=True, type=pathlib.Path, help="the program")
    parser.add_argument("--faults", required=True, type=pathlib.Path, help="the library that faults.cpp becomes")
    parser.add_argument("--seed", type=int, default=42, help="the same seed tries the same (%(default)s)")
    parser.add_argument("--case", type=int, help="try only this case")
    parser.add_argument("--count", type=int, help="try so many cases")
    parser.add_argument("--minutes", type=float, default=10, help="how long programs run together (%(default)s)")
    parser.add_argument("--short", action="store_true", help="try only a few cases")
    parser.add_argument("trials", nargs="*", choices=[[], *TRIALS], help=f"of {', '.join(TRIALS)}; all by default")
    return parser.parse_args()


def main():
    given = options()
    if given.short:
        given.minutes = SHORT
    work = pathlib.Path(tempfile.mkdtemp(prefix="tidel-soak-"))
    keep = work / "findings"
    keep.mkdir()
    server, address = start_server(work)
    try:
        scenes = Scenes(Home(work / "home", given.tidel.resolve(), given.faults.resolve()), work, address)
        isfine = all([try_all(name, given, scenes, keep) for name in given.trials or TRIALS])
    finally:
        server.stdin.close()
        server.wait()
    if isfine:
        shutil.rmtree(work)
    else:
        print(f"The homes of findings are in {keep}; trials, seed and case repeat them.")
    return 0 if isfine else 1


if __name__ == "__main__":
    sys.exit(main())
