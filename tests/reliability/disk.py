# SPDX-License-Identifier: LGPL-2.1-or-later
"""What a disk may hold after a power cut.

A file system keeps the order of its names: some first part of what was created, renamed and removed is on the disk,
at least up to what was synced. What was written since the last sync of a file may be there or not, each write or
sector by itself. A cut or extension of a file that is lost loses what was written to this file afterwards.
"""
import pathlib

SECTORS = (512, 4096)


class File:
    def __init__(self, content=b""):
        self.synced = bytearray(content)
        self.pending = []

    def sync(self):
        for change in self.pending:
            apply(self.synced, change)
        self.pending = []

    def content(self, keep):
        """Returns what is on the disk; `keep` says what becomes of a write that was not synced."""
        content = bytearray(self.synced)
        for change in self.pending:
            kept = keep(change)
            if change.kind == "t" and not kept:
                break
            for part in kept:
                apply(content, part)
        return content


def apply(content, change):
    if change.kind == "t":
        del content[change.offset:]
    if len(content) < change.offset:
        content.extend(bytes(change.offset - len(content)))
    content[change.offset:change.offset + len(change.data)] = change.data


def sectors(change, size):
    """Splits a write at the bounds of sectors."""
    parts = []
    start = change.offset
    end = start + len(change.data)
    while start < end:
        stop = min(end, (start // size + 1) * size)
        data = change.data[start - change.offset:stop - change.offset]
        parts.append(change._replace(offset=start, data=data))
        start = stop
    return parts


class Disk:
    """The files below `folder`, which are on the disk, and what a journal then does to them."""

    def __init__(self, folder, home):
        self.start = {}
        for path in pathlib.Path(folder).rglob("*"):
            self.start[str(home / path.relative_to(folder))] = File(path.read_bytes()) if path.is_file() else None
        self.names = dict(self.start)
        self.events = []
        self.synced_events = 0

    def play(self, change):
        if change.kind in "cdur":
            file = {"c": File(), "d": None}.get(change.kind, self.names.get(change.path))
            self.events.append((change, file))
            rename(self.names, change, file)
        elif self.names.get(change.path) is None:
            # A folder, or a file that is open although it was removed.
            if change.kind == "s" and change.path in self.names:
                self.synced_events = len(self.events)
        elif change.kind == "s":
            self.sync(self.names[change.path])
        else:
            self.names[change.path].pending.append(change)

    def sync(self, file):
        file.sync()
        last = max((place + 1 for place, (_, other) in enumerate(self.events) if other is file), default=0)
        self.synced_events = max(self.synced_events, last)

    def after_cut(self, rng):
        """Returns the names and contents of the files; the content of a folder is None."""
        kept_events, keep = luck(rng, self.synced_events, len(self.events))
        names = dict(self.start)
        for change, file in self.events[:kept_events]:
            rename(names, change, file)
        return {name: file and file.content(keep) for name, file in names.items()}


def rename(names, change, file):
    if change.kind in "ur":
        names.pop(change.path, None)
    if change.kind != "u":
        names[change.target or change.path] = file


def luck(rng, least, most):
    """Decides how many names are kept, and what is kept of a write: nothing, everything, or as it happens."""
    def mixed(change):
        if change.kind == "t" or rng.random() < 0.7:
            return [change] if rng.random() < 0.5 else []
        return [part for part in sectors(change, rng.choice(SECTORS)) if rng.random() < 0.5]
    names = rng.choice([least, most, rng.randint(least, most)])
    return names, rng.choice([lambda change: [], lambda change: [change], mixed])


def write_files(contents, folder):
    """Replaces the files below the folder."""
    for name, content in sorted(contents.items()):
        path = pathlib.Path(name)
        if folder not in path.parents:
            continue
        (path if content is None else path.parent).mkdir(parents=True, exist_ok=True)
        if content is not None:
            path.write_bytes(content)
