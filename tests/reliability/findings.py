# SPDX-License-Identifier: LGPL-2.1-or-later
"""Counts what a trial found, and judges the archive after an interruption."""
import shutil
from collections import Counter

from archive import Unreadable, damage, facts, untrue
from home import has_crashed

KINDS = ("corrupt", "lost", "twice", "invented", "refused", "crashed", "false successes", "unfinished",
         "errors", "control characters", "outside files")


PRINTED = 5


class Findings:
    """The findings of one trial."""

    def __init__(self, trial, seed, keep):
        self.trial = trial
        self.seed = seed
        self.keep = keep
        self.tried = 0
        self.counts = Counter()
        self.notes = Counter()

    def add(self, kind, case, text):
        """Counts a finding, and prints the first of its kind."""
        self.counts[kind] += 1
        if self.counts[kind] > PRINTED:
            return
        print(f"  finding: {kind}: {text}\n    again: --seed {self.seed} --case {case} {self.trial}", flush=True)

    def summary(self, what):
        told = [f"{self.counts[kind]} {kind}" for kind in KINDS]
        told += [f"{count} {name}" for name, count in sorted(self.notes.items())]
        return f"{what}: {self.tried} tried, {', '.join(told)}, seed {self.seed}"


class Judge:
    """Judges one interrupted command."""

    def __init__(self, home, findings, case, name):
        self.home = home
        self.findings = findings
        self.case = case
        self.name = name
        # What was found before anything was repeated; it stays if there is a finding.
        self.kept = findings.keep / f"{findings.trial}-{case}"
        shutil.copytree(home.path, self.kept)
        self.isfine = True

    def report(self, kind, text):
        self.isfine = False
        self.findings.add(kind, self.case, f"{self.name}: {text}")

    def compare(self, kind, wrong, context=""):
        """Reports what is wrong, of which it names the first."""
        if wrong:
            self.report(kind, f"{sorted(wrong)[0]} and {len(wrong) - 1} more{context}")

    def observe(self, faults=None, isfinal=False):
        """Returns the facts of the home, or None if it cannot be read; only what stays so is a finding."""
        found = damage(self.home)
        if found:
            self.report("corrupt", found)
        try:
            return facts(self.home, faults)
        except Unreadable as error:
            if isfinal or error.kind != "refused":
                self.report(error.kind, str(error))
            else:
                self.findings.notes["refused at first"] += 1
            return None

    def outcome(self, outcome, observed, after):
        """Checks that the command did what it said it did."""
        if has_crashed(outcome):
            self.report("crashed", outcome.err)
        if observed is None:
            return
        everything = set(observed) ^ set(after)
        wrong = everything if outcome.code == 0 else untrue(outcome, observed, after)
        self.compare("false successes", wrong, f" after exit {outcome.code}: {outcome.out}{outcome.err}")

    def between(self, observed, states):
        """Compares the facts with states, of which the first was sure and the others may have followed."""
        if observed is None:
            return
        self.compare("lost", set.intersection(*[set(state) for state in states]) - set(observed))
        self.compare("invented", set(observed) - set.union(*[set(state) for state in states]))
        self.compare("twice", {fact for fact, count in observed.items() if count > 1})

    def finish(self, steps, after):
        """Repeats the commands. One that has nothing left to do may say so."""
        for step in steps:
            for command in step.repetition():
                self.home.run(*command)
        observed = self.observe(isfinal=True)
        if observed is not None:
            wrong = set(observed) ^ set(after)
            left = {fact for fact in wrong if fact.kind == "file" and fact in observed}
            self.findings.notes["left a file behind"] += bool(left)
            self.compare("unfinished", wrong - left)
            self.compare("twice", {fact for fact, count in observed.items() if count > 1})
        self.end()

    def end(self):
        if self.isfine:
            shutil.rmtree(self.kept)
