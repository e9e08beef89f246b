# SPDX-License-Identifier: LGPL-2.1-or-later
"""Reads the journals that faults.cpp writes."""
import pathlib
import struct
from collections import namedtuple

HEAD = struct.Struct("<cIIQQ")

# kind: c created, w written, t truncated or extended, s synced, d folder made, u removed, r renamed
Change = namedtuple("Change", "kind path target offset data")


def read(path):
    """Returns the changes of a journal."""
    changes = []
    content = memoryview(pathlib.Path(path).read_bytes())
    place = 0
    while place < len(content):
        kind, path_size, target_size, offset, size = HEAD.unpack_from(content, place)
        place += HEAD.size
        ends = place + path_size, place + path_size + target_size
        changes.append(Change(kind.decode(), bytes(content[place:ends[0]]).decode(),
                              bytes(content[ends[0]:ends[1]]).decode(), offset,
                              bytes(content[ends[1]:ends[1] + size])))
        place = ends[1] + size
    return changes


def count(path):
    return len(read(path)) if pathlib.Path(path).exists() else 0


def growth(path):
    """Returns about how many bytes the files grew, so that a smaller disk is full at some time."""
    ends = {}
    for change in read(path) if pathlib.Path(path).exists() else []:
        if change.kind == "w":
            end = change.offset + len(change.data)
            ends[change.path] = max(ends.get(change.path, 0), end)
    return sum(end for name, end in ends.items() if not name.endswith("meta.db"))
