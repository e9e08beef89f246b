# SPDX-License-Identifier: LGPL-2.1-or-later
"""Power cuts: the journal of some commands is played up to a random change, and what was not synced may be lost."""
import contextlib
import shutil
import sqlite3

import journal
from disk import Disk, write_files
from findings import Judge

# Commands whose results outlive a power cut once they have ended. What others did may have to be repeated.
LASTING = ("favorite", "unfavorite", "edit")


@contextlib.contextmanager
def held_open(home):
    """Another program has the store open, so that the database is not completed at the end of each command."""
    database = sqlite3.connect(home.store / "meta.db")
    database.execute("PRAGMA schema_version").fetchall()
    yield
    database.close()


class Recording:
    """The changes that each command of a scene made."""

    def __init__(self, scenes, name, is_held):
        self.home = scenes.home
        self.steps = scenes.steps[name]
        self.name = name + (", store held open" if is_held else "")
        self.home.become(self.steps[0].start)
        with held_open(self.home) if is_held else contextlib.nullcontext():
            self.changes = [self.record(step, scenes.work / "cut.journal") for step in self.steps]

    def record(self, step, path):
        path.unlink(missing_ok=True)
        self.home.run(*step.command, faults={"JOURNAL": path})
        return journal.read(path)

    @staticmethod
    def place(changes, rng):
        """Returns a number of changes: any, all, or those up to a change of names, as these are told apart."""
        names = [number + 1 for number, change in enumerate(changes) if change.kind in "cdur"]
        return rng.choice([rng.randint(0, len(changes)), len(changes), rng.choice(names or [0])])

    def cut(self, rng):
        """Makes the home what it may be after a power cut, and returns the number of ended commands."""
        ended = rng.randrange(len(self.steps))
        place = self.place(self.changes[ended], rng)
        disk = Disk(self.steps[0].start, self.home.path)
        for changes in self.changes[:ended] + [self.changes[ended][:place]]:
            for change in changes:
                disk.play(change)
        self.home.become(self.steps[0].start)
        for name in ("data", "Downloads"):
            shutil.rmtree(self.home.path / name, ignore_errors=True)
        write_files(disk.after_cut(rng), self.home.path)
        return ended + (place == len(self.changes[ended])), place


class PowerCuts:
    """Cuts the power while and after the commands of a scene run."""

    def __init__(self, scenes, options):
        self.recordings = [Recording(scenes, name, is_held) for name in scenes.steps
                           for is_held in (False, True) if not (is_held and name == "first use")]
        # The first use is where most can go wrong.
        self.recordings += self.recordings[:1] * 3

    def run(self, case, rng, findings):
        recording = rng.choice(self.recordings)
        ended, place = recording.cut(rng)
        steps = recording.steps
        judge = Judge(recording.home, findings, case, f"{recording.name}, {ended} commands ended, change {place}")
        findings.tried += 1
        lasting = max((number + 1 for number in range(ended) if steps[number].command[0] in LASTING), default=0)
        begun = steps[lasting:ended + 1]
        sure = steps[lasting - 1].after if lasting else steps[0].before
        observed = judge.observe()
        judge.between(observed, [sure] + [step.after for step in begun])
        findings.notes["to be repeated"] += ended == len(steps) and observed != steps[-1].after
        judge.finish(begun, begun[-1].after if begun else sure)
