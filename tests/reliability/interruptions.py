# SPDX-License-Identifier: LGPL-2.1-or-later
"""Trials that interrupt one command: kills and full disks."""
from findings import Judge


class Interruptions:
    """Interrupts one command after the other as `choose` says."""

    def __init__(self, scenes, choose):
        self.scenes = scenes
        self.choose = choose

    def run(self, case, rng, findings):
        step = rng.choice(self.scenes.all_steps())
        home = self.scenes.home
        home.become(step.start)
        how, options = self.choose(step, rng)
        outcome = home.run(*step.command, **options)
        judge = Judge(home, findings, case, f"{step.name}, {how}")
        findings.tried += 1
        findings.notes["ended before"] += outcome.code == 0
        observed = judge.observe()
        judge.outcome(outcome, observed, step.after)
        judge.between(observed, [step.before, step.after])
        judge.finish([step], step.after)


def at_random_time(step, rng):
    """Most of the time of a short command is spent on its start."""
    seconds = rng.uniform(0, step.seconds)
    return f"killed after {seconds:.4f} s", {"kill_after": seconds, "faults": {}}


def at_change(step, rng):
    number = rng.randint(1, step.changes)
    kind = rng.choice(["KILL", "TEAR"])
    return f"{kind.lower()} at change {number} of {step.changes}", {"faults": {kind: number}}


def with_full_disk(step, rng):
    """Many commands write least and last when they complete what they did."""
    space = rng.choice([0, rng.randint(0, step.space), max(0, step.space - rng.randint(1, 16384))])
    return f"space for {space} of {step.space} bytes", {"faults": {"SPACE": space}}
