# SPDX-License-Identifier: LGPL-2.1-or-later
"""What a home holds, as facts that can be compared, and whether its database is sound."""
import datetime
import json
import re
import shutil
import sqlite3
import tempfile
from collections import Counter, namedtuple

from home import has_crashed

# A fact is of a channel (its link and title, as the program names it), and of a message if it has a link.
Fact = namedtuple("Fact", "kind channel title link")


class Unreadable(Exception):
    """The program did not list what is there."""

    def __init__(self, kind, text):
        super().__init__(text)
        self.kind = kind


def listed(home, *arguments, faults=None):
    """Returns the objects that a command lists."""
    outcome = home.run(*arguments, "--json", faults=faults)
    if outcome.code != 0:
        kind = "crashed" if has_crashed(outcome) else "refused"
        raise Unreadable(kind, f"{arguments[0]}: exit {outcome.code}: {(outcome.err or outcome.out).strip()}")
    return [json.loads(line) for line in outcome.out.splitlines()]


def facts(home, faults=None):
    """Returns how often each fact is true."""
    found = Counter()
    for channel in listed(home, "channels", faults=faults):
        named = (channel["link"], channel.get("title", ""))
        found[Fact("channel", *named, "")] += 1
        for message in listed(home, "messages", channel["uri"], faults=faults):
            found[Fact("message", *named, message["link"])] += 1
            if message["favorite"]:
                found[Fact("favorite", *named, message["link"])] += 1
    for path in sorted((home.path / "Downloads").rglob("*")):
        if path.is_file() and not path.name.endswith((".part", ".part.json")):
            found[Fact("file", "", "", f"{path.name}, {path.stat().st_size} bytes")] += 1
    return found


def time_order(value):
    """What Tracker's function of the same purpose gives for a time, which an index of the database contains."""
    if not isinstance(value, str):
        return value if value is None else value * 1_000_000
    moment = datetime.datetime.fromisoformat(value)
    moment = moment.replace(tzinfo=moment.tzinfo or datetime.timezone.utc)
    return round(moment.timestamp() * 1_000_000)


def damage(home):
    """Returns what SQLite finds wrong with a copy of the database; empty if nothing or if there is none."""
    if not (home.store / "meta.db").exists():
        return ""
    with tempfile.TemporaryDirectory() as copy:
        for name in ("meta.db", "meta.db-wal"):
            if (home.store / name).exists():
                shutil.copy(home.store / name, copy)
        try:
            database = sqlite3.connect(f"{copy}/meta.db")
            database.create_function("SparqlTimeSort", 1, time_order, deterministic=True)
            rows = database.execute("PRAGMA integrity_check").fetchall()
            database.close()
        except sqlite3.DatabaseError as error:
            return str(error)
        return "" if rows == [("ok",)] else str(rows[:3])


def confirmed(out, state):
    """Returns the names of channels and messages that a line of the output says something about."""
    names = {fact.title for fact in state} | {fact.link for fact in state}
    words = set()
    for line in out.splitlines():
        words |= {line, *line.split(": ")}
        words |= {re.sub(r" \(\d+ messages?\)$", "", part) for part in line.split(": ")}
    return (names & words) - {""}


def untrue(outcome, observed, after):
    """Returns the facts that are not as the output says. What an error names was not completed."""
    everything = set(after) | set(observed)
    names = confirmed(outcome.out, everything) - confirmed(outcome.err, everything)
    different = set(observed) ^ set(after)
    return {fact for fact in different if {fact.title, fact.link} & names}
