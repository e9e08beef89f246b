# SPDX-License-Identifier: LGPL-2.1-or-later
"""Runs a program and measures it as a whole."""

import dataclasses
import os
import statistics
import subprocess
import tempfile
import time


@dataclasses.dataclass
class Cost:
    wall: float  # seconds
    cpu: float  # seconds, user and system, with all processes that the program started
    peak: float  # MiB of the largest process


@dataclasses.dataclass
class Answer:
    text: str
    cost: Cost


def run(command, environment):
    """Runs command with environment. Ends the benchmark if the command fails."""
    with tempfile.TemporaryFile() as output:
        begin = time.perf_counter()
        process = subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL, stdout=output,
                                   stderr=subprocess.STDOUT)
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.perf_counter() - begin
        process.returncode = os.waitstatus_to_exitcode(status)
        output.seek(0)
        text = output.read().decode(errors="replace")
    if process.returncode != 0:
        raise SystemExit(f"{' '.join(map(str, command[:3]))} ... ended with {process.returncode}:\n{text[-2000:]}")
    return Answer(text, Cost(wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024))


def median(costs):
    """The median of each figure, and the largest peak."""
    return Cost(statistics.median(cost.wall for cost in costs), statistics.median(cost.cpu for cost in costs),
                max(cost.peak for cost in costs))
