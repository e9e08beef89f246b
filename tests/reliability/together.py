# SPDX-License-Identifier: LGPL-2.1-or-later
"""Programs that use one store at once: four refresh, two read, one prunes and one marks favorites."""
import json
import random
import threading
import time
from collections import Counter

from feeds import link, write_feed
from findings import Judge

WHOLE = ("apples", "birches")
PRUNED = ("cedars", "daisies")
KEPT = 50
# Items that every program has seen stay in the feed for a while, as in feeds of others.
SHOWN = 200


class Together:
    def __init__(self, scenes, options):
        self.home = scenes.home
        self.seconds = options.minutes * 60
        self.home.become(scenes.work / "empty")
        self.items = 100
        self.seen = 0
        self.favorites = set()
        self.longest = Counter()
        self.lock = threading.Lock()
        self.write_feeds()
        scenes.expect("subscribe", *[str(self.home.path / f"feeds/{name}.xml") for name in WHOLE + PRUNED])

    def write_feeds(self):
        for name in WHOLE + PRUNED:
            write_feed(self.home.path / f"feeds/{name}.xml", range(max(0, self.seen - SHOWN), self.items))

    def run(self, case, rng, findings):
        self.findings = findings
        self.end = time.monotonic() + self.seconds
        jobs = [self.refresh] * 4 + [self.read] * 2 + [self.prune, self.mark]
        threads = [threading.Thread(target=self.repeat, args=(job, random.Random(rng.random()))) for job in jobs]
        for thread in threads:
            thread.start()
        while time.monotonic() < self.end:
            self.items += rng.randint(0, 12)
            self.write_feeds()
            time.sleep(0.5)
        for thread in threads:
            thread.join()
        self.command("refresh")
        self.judge(case)

    def repeat(self, job, rng):
        while time.monotonic() < self.end:
            job(rng)

    def command(self, *arguments, may_miss=False):
        """Runs a command, which must succeed, and notes how long it took."""
        began = time.monotonic()
        outcome = self.home.run(*arguments)
        seconds = round(time.monotonic() - began, 1)
        with self.lock:
            self.findings.tried += 1
            self.longest[arguments[0]] = max(self.longest[arguments[0]], seconds)
            if may_miss and "no such message" in outcome.err:
                self.findings.notes["marked too late"] += 1
            elif outcome.code != 0:
                self.findings.add("errors", 0, f"{arguments}: exit {outcome.code}: {outcome.err}")
        return outcome

    def refresh(self, rng):
        items = self.items
        if self.command("refresh").code == 0:
            self.seen = max(self.seen, items)

    def messages(self, channel):
        lines = self.command("messages", channel, "--json").out.splitlines()
        return [message for message in map(json.loads, lines) if "error" not in message]

    def read(self, rng):
        self.command("channels")
        name = rng.choice(WHOLE + PRUNED)
        links = [message["link"] for message in self.messages(name)]
        if len(links) != len(set(links)):
            self.findings.add("twice", 0, f"{name} lists a message twice")

    def prune(self, rng):
        self.command("prune", *PRUNED, "--keep", str(KEPT), "--include-unread")

    def mark(self, rng):
        """Marks an old message, which the next pruning would delete."""
        listed = self.messages(rng.choice(WHOLE + PRUNED))
        old = [message for message in listed[KEPT // 2:] if not message["favorite"]]
        chosen = rng.choice(old)["link"] if old else None
        if chosen and self.command("favorite", chosen, may_miss=True).code == 0:
            self.favorites.add(chosen)
        time.sleep(0.1)

    def judge(self, case):
        judge = Judge(self.home, self.findings, case, "together")
        observed = judge.observe(isfinal=True) or Counter()
        whole = [link(name, number) for name in WHOLE for number in range(self.items)]
        newest = [link(name, number) for name in PRUNED for number in range(self.items - KEPT, self.items)]
        everything = {link(name, number) for name in WHOLE + PRUNED for number in range(self.items)}
        links = Counter({fact.link: count for fact, count in observed.items() if fact.kind == "message"})
        marked = {fact.link for fact in observed if fact.kind == "favorite"}
        judge.compare("lost", {*whole, *newest, *self.favorites} - set(links))
        judge.compare("lost", self.favorites - marked)
        judge.compare("invented", (set(links) - everything) | (marked - self.favorites))
        judge.compare("twice", {name for name, count in links.items() if count > 1})
        self.findings.notes["messages"] = sum(links.values())
        self.findings.notes["favorites"] = len(marked)
        for name, seconds in self.longest.items():
            self.findings.notes[f"s longest {name}"] = seconds
        judge.end()
