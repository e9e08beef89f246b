# SPDX-License-Identifier: LGPL-2.1-or-later
"""The commands that the trials interrupt, and what the archive holds before and after each."""
import pathlib
import time

import journal
from archive import facts
from feeds import link, write_feed

# What each scene starts with, and its commands. `{feeds}` is the folder of the feeds.
SCENES = {
    "first use": ("empty", [["subscribe", "{feeds}/garden.xml", "{feeds}/radio.xml", "{feeds}/news.xml"],
                            ["favorite", link("garden", 100)]]),
    "refresh": ("filled", [["refresh"]]),
    "marks": ("filled", [["favorite", link("garden", 7)], ["unfavorite", link("garden", 3)],
                         ["edit", "news", "--title", "latest"]]),
    "prune": ("filled", [["prune", "--keep", "20", "--include-unread"]]),
    "unsubscribe": ("filled", [["unsubscribe", "garden"]]),
    "download": ("filled", [["download", link("radio", 5), link("radio", 6)]]),
    "a day": ("filled", [["subscribe", "{feeds}/late.xml"], ["favorite", link("late", 9)], ["refresh"],
                         ["prune", "--keep", "30", "--include-unread"], ["unsubscribe", "news"]]),
}


class Step:
    """A command, the home before it, and the facts before and after it."""

    def __init__(self, scene, command):
        self.scene = scene
        self.command = command
        self.name = f"{scene}: {command[0]}"

    def repetition(self):
        """Returns the commands that a user gives after an interruption."""
        if self.command[0] == "subscribe":
            return [self.command, ["refresh", *self.command[1:]]]
        return [self.command]


class Scenes:
    def __init__(self, home, work, server):
        self.home = home
        self.work = pathlib.Path(work)
        self.files = f"{server}/bytes/8192"
        self.make_starts()
        self.steps = {name: self.make_steps(name, *scene) for name, scene in SCENES.items()}

    def all_steps(self):
        return [step for steps in self.steps.values() for step in steps]

    def expect(self, *arguments, faults=None):
        outcome = self.home.run(*arguments, faults=faults)
        if outcome.code != 0:
            raise SystemExit(f"soak: tidel {' '.join(arguments)} failed undisturbed: {outcome.err}")
        return outcome

    def write_feeds(self, items):
        folder = self.home.path / "feeds"
        folder.mkdir(parents=True, exist_ok=True)
        write_feed(folder / "garden.xml", range(items))
        write_feed(folder / "radio.xml", range(items // 4), self.files)
        write_feed(folder / "news.xml", range(items // 2))
        write_feed(folder / "late.xml", range(40))

    def make_starts(self):
        feeds = self.home.path / "feeds"
        self.write_feeds(150)
        self.home.save(self.work / "empty")
        self.expect("subscribe", *[str(feeds / f"{name}.xml") for name in ("garden", "radio", "news")])
        for number in (1, 2, 3):
            self.expect("favorite", link("garden", number))
        self.expect("download", link("radio", 4))
        self.write_feeds(400)
        self.home.save(self.work / "filled")

    def sizes(self, start):
        """Returns the sizes of the files of a home that was saved to `start`."""
        return {str(self.home.path / path.relative_to(start)): path.stat().st_size
                for path in start.rglob("*") if path.is_file()}

    def make_steps(self, scene, start, commands):
        """Runs the commands undisturbed, and keeps what the home was before each of them."""
        self.home.become(self.work / start)
        steps = []
        for number, command in enumerate(commands):
            step = Step(scene, [word.format(feeds=self.home.path / "feeds") for word in command])
            step.start = self.work / f"{scene}-{number}"
            step.journal = self.work / f"{scene}-{number}.journal"
            step.before = steps[-1].after if steps else facts(self.home) if start != "empty" else {}
            self.home.save(step.start)
            began = time.monotonic()
            step.out = self.expect(*step.command, faults={"JOURNAL": step.journal}).out
            step.seconds = time.monotonic() - began
            changes = journal.read(step.journal)
            step.changes = len(changes)
            step.space = journal.space_needed(changes, self.sizes(step.start))
            step.after = facts(self.home)
            steps.append(step)
        return steps
